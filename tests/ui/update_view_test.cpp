#include "ui/update_view.h"

#include <gmock/gmock.h>

#include <QMenuBar>
#include <QScrollBar>

#include "ui/menus.h"
#include "ui/window_shade.h"
#include "update_view_fixture.h"

namespace orlix::test {
namespace {

const QString title = QStringLiteral("Software Update");
const QString available = QStringLiteral("Velmorandix Orlix 1.10 (build 42) is available.");

class UpdateViewTest : public UpdateSheetTest {
  protected:
    void SetUp() override { showWindowForTwoPeople(); }

    /// Whether some text of `part` is rather red, not grey.
    static bool isRed(QWidget* part) {
        const QImage picture = part->grab().toImage();
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor color = picture.pixelColor(x, y);
                if (color.red() - color.green() > 80 && color.red() - color.blue() > 80) return true;
            }
        }
        return false;
    }
};

TEST_F(UpdateViewTest, isNotBuiltBeforeItIsNeeded) {
    EXPECT_EQ(sheet(), nullptr);
    server().response.error = QStringLiteral("Connection refused");
    updates->checkForUpdates(true);
    finish();
    EXPECT_EQ(sheet(), nullptr) << "a silent check that fails stays silent";
}

TEST_F(UpdateViewTest, checksUnderTheTitle) {
    beChecking();
    ASSERT_TRUE(isShown());
    EXPECT_EQ(lines(), QStringList{title});
    EXPECT_EQ(messageText(), QStringLiteral("Checking for updates…"));
    EXPECT_FALSE(isRed(message()));
    EXPECT_TRUE(activity()->isVisible());
    EXPECT_FALSE(notes()->isVisible());
    EXPECT_TRUE(close()->isEnabled());
    EXPECT_FALSE(checkAgain()->isEnabled());
    EXPECT_FALSE(install()->isVisible());
    EXPECT_EQ(close()->accessibleName(), QStringLiteral("Close"));
    EXPECT_EQ(checkAgain()->accessibleName(), QStringLiteral("Check Again"));
}

TEST_F(UpdateViewTest, saysThatTheApplicationIsUpToDate) {
    beUpToDate();
    ASSERT_TRUE(isShown());
    EXPECT_EQ(lines(), QStringList{title});
    EXPECT_EQ(messageText(), QStringLiteral("Velmorandix Orlix is up to date (version 1.9)."));
    EXPECT_FALSE(isRed(message()));
    EXPECT_FALSE(activity()->isVisible());
    EXPECT_TRUE(checkAgain()->isEnabled());
    EXPECT_FALSE(install()->isVisible());
}

TEST_F(UpdateViewTest, saysInRedWhyACheckFailed) {
    failToCheck();
    EXPECT_EQ(lines(), QStringList{title});
    EXPECT_EQ(messageText(), QStringLiteral("Update check failed: Connection refused"));
    EXPECT_TRUE(isRed(message()));
    EXPECT_TRUE(checkAgain()->isEnabled());
    EXPECT_FALSE(install()->isVisible());
}

TEST_F(UpdateViewTest, offersARelease) {
    check();
    EXPECT_EQ(lines(), (QStringList{title, available}));
    EXPECT_EQ(messageText(), QString());
    EXPECT_FALSE(notes()->isVisible()) << "it has none";
    EXPECT_FALSE(activity()->isVisible());
    EXPECT_TRUE(checkAgain()->isEnabled());
    EXPECT_TRUE(install()->isVisible());
    EXPECT_TRUE(install()->isEnabled());
    EXPECT_EQ(install()->accessibleName(), QStringLiteral("Download, Install & Relaunch"));
}

TEST_F(UpdateViewTest, showsTheNotesOfARelease) {
    release().releaseNotes = QStringLiteral("- Faster\n- <b>Calmer</b>");
    check();
    ASSERT_TRUE(notes()->isVisible());
    EXPECT_EQ(notes()->text(), *release().releaseNotes) << "letter by letter";
    EXPECT_GE(notes()->height(), 80);
    release().releaseNotes = QStringLiteral("A line.\n").repeated(200);
    check();
    EXPECT_GE(notes()->height(), 80);
    EXPECT_LE(notes()->height(), 180);
}

TEST_F(UpdateViewTest, aReleaseWithoutBuildHasAQuestionMarkAndCannotBeInstalled) {
    release().build.reset();
    check();
    EXPECT_EQ(lines(), (QStringList{title, QStringLiteral("Velmorandix Orlix 1.10 (build ?) is available."),
                                    QStringLiteral("The feed has no valid verification metadata; automatic "
                                                   "installation is disabled.")}));
    EXPECT_TRUE(install()->isVisible());
    EXPECT_FALSE(install()->isEnabled());
    press(Qt::Key_Return);
    EXPECT_FALSE(updates->isInstalling());
}

TEST_F(UpdateViewTest, aReleaseWithoutDigestOrSizeCannotBeInstalled) {
    const UpdateInfo good = release();
    for (const bool hasDigest : {true, false}) {
        release() = good;
        if (hasDigest) {
            release().size.reset();
        } else {
            release().sha256.reset();
        }
        check();
        EXPECT_EQ(lines().size(), 3);
        EXPECT_FALSE(install()->isEnabled());
    }
    release() = good;
    check();
    EXPECT_EQ(lines(), (QStringList{title, available}));
    EXPECT_TRUE(install()->isEnabled());
}

TEST_F(UpdateViewTest, installsFromItsButton) {
    check();
    server().gate.close();
    QTest::mouseClick(install(), Qt::LeftButton);
    EXPECT_TRUE(isShown());
    EXPECT_EQ(lines(), (QStringList{title, available}));
    EXPECT_EQ(messageText(), QStringLiteral("Downloading and verifying Velmorandix Orlix 1.10…"));
    EXPECT_TRUE(activity()->isVisible());
    EXPECT_FALSE(checkAgain()->isEnabled());
    EXPECT_TRUE(install()->isVisible());
    EXPECT_FALSE(install()->isEnabled());
    EXPECT_TRUE(close()->isEnabled());
    finish();
    EXPECT_FALSE(isShown());
    EXPECT_EQ(terminationRequests, 1);
    EXPECT_EQ(updates->message(),
              QStringLiteral("Update verified. Velmorandix Orlix will now install and relaunch."));
}

TEST_F(UpdateViewTest, saysInRedWhyAnInstallationFailedAndOffersItAgain) {
    failToInstall();
    EXPECT_TRUE(isShown());
    EXPECT_EQ(lines(), (QStringList{title, available}));
    EXPECT_EQ(messageText(), QStringLiteral("Automatic updates require a Developer ID signed application."));
    EXPECT_TRUE(isRed(message()));
    EXPECT_FALSE(activity()->isVisible());
    EXPECT_TRUE(install()->isEnabled());
    EXPECT_TRUE(checkAgain()->isEnabled());
    EXPECT_EQ(terminationRequests, 0);
}

TEST_F(UpdateViewTest, checksAgainFromItsButtonOnceAtATime) {
    beUpToDate();
    const int before = server().begun;
    server().gate.close();
    QTest::mouseClick(checkAgain(), Qt::LeftButton);
    QTest::mouseClick(checkAgain(), Qt::LeftButton);
    EXPECT_EQ(messageText(), QStringLiteral("Checking for updates…"));
    finish();
    EXPECT_EQ(server().begun, before + 1);
}

TEST_F(UpdateViewTest, aSilentCheckOpensItForAnUpdateOnly) {
    server().response.body = release().toJson();
    updates->checkForUpdates(true);
    finish();
    EXPECT_TRUE(isShown());
    EXPECT_EQ(messageText(), QString());
    EXPECT_EQ(lines(), (QStringList{title, available}));
}

TEST_F(UpdateViewTest, standsInTheOrderOfItsReadingWithoutOverlap) {
    release().releaseNotes = QStringLiteral("A line.\n").repeated(200);
    beInstalling();
    QList<QWidget*> parts;
    for (TextLabel* label : sheet()->findChildren<TextLabel*>(QString(), Qt::FindDirectChildrenOnly))
        if (label->isVisible()) parts.append(label);
    parts += {notes(), message(), activity(), close()};
    for (qsizetype index = 1; index < parts.size(); ++index)
        EXPECT_GT(parts[index]->y(), parts[index - 1]->geometry().bottom()) << index;
    EXPECT_EQ(sheet()->size(), QSize(520, 300));
    EXPECT_EQ(parts.first()->pos(), QPoint(24, 24));
    EXPECT_GE(notes()->height(), 80);
    EXPECT_EQ(close()->geometry().bottom(), 300 - 24 - 1);
    EXPECT_LT(close()->geometry().right(), checkAgain()->x());
    EXPECT_LT(checkAgain()->geometry().right(), install()->x());
    EXPECT_EQ(install()->geometry().right(), 520 - 24 - 1);
}

TEST_F(UpdateViewTest, closesByButtonEscapeAndWindowManager) {
    beUpToDate();
    QTest::mouseClick(close(), Qt::LeftButton);
    EXPECT_FALSE(isShown());
    EXPECT_FALSE(updates->isPresented());

    updates->setPresented(true);
    ASSERT_TRUE(isShown());
    EXPECT_EQ(messageText(), QStringLiteral("Velmorandix Orlix is up to date (version 1.9)."));
    press(Qt::Key_Escape);
    EXPECT_FALSE(isShown());
    EXPECT_FALSE(updates->isPresented());

    updates->setPresented(true);
    sheet()->close();
    EXPECT_FALSE(isShown());
    EXPECT_FALSE(updates->isPresented());
    EXPECT_TRUE(window->isVisible());
}

TEST_F(UpdateViewTest, closingItLeavesAnInstallationToItself) {
    beInstalling();
    press(Qt::Key_Escape);
    EXPECT_FALSE(isShown());
    EXPECT_TRUE(updates->isInstalling());
    finish();
    EXPECT_EQ(terminationRequests, 1);
}

TEST_F(UpdateViewTest, returnInstallsAndOnAButtonPressesThat) {
    check();
    server().gate.close();
    press(Qt::Key_Return);
    EXPECT_TRUE(updates->isInstalling());
    server().fileContents = "something else";
    finish();
    EXPECT_EQ(messageText().left(32), QStringLiteral("The update has the wrong size (e"));

    close()->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Enter);
    EXPECT_FALSE(updates->isInstalling());
    EXPECT_FALSE(isShown());
}

TEST_F(UpdateViewTest, aKeyThatIsHeldDownInstallsNothing) {
    check();
    QTest::simulateEvent(sheet(), true, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
    EXPECT_FALSE(updates->isInstalling());
}

TEST_F(UpdateViewTest, returnDoesNothingWithoutARelease) {
    beUpToDate();
    press(Qt::Key_Return);
    EXPECT_TRUE(isShown());
    EXPECT_FALSE(updates->isInstalling());
    EXPECT_FALSE(updates->isChecking());
}

TEST_F(UpdateViewTest, spacePressesTheButtonThatHasTheFocus) {
    check();
    press(Qt::Key_Space);
    EXPECT_TRUE(isShown());
    EXPECT_FALSE(updates->isInstalling());
    close()->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    EXPECT_FALSE(isShown());
    EXPECT_FALSE(game->isPaused());
}

TEST_F(UpdateViewTest, tabGoesAsItIsRead) {
    release().releaseNotes = QStringLiteral("A line.\n").repeated(200);
    check();
    QStringList names;
    for (int stop = 0; stop < 4; ++stop) {
        press(Qt::Key_Tab);
        ASSERT_NE(sheet()->focusWidget(), nullptr);
        names += sheet()->focusWidget()->accessibleName();
    }
    EXPECT_EQ(names, (QStringList{QStringLiteral("Release notes"), close()->accessibleName(),
                                  checkAgain()->accessibleName(), install()->accessibleName()}));
    press(Qt::Key_Tab);
    EXPECT_EQ(sheet()->focusWidget()->accessibleName(), QStringLiteral("Release notes"));
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(sheet()->focusWidget(), install());
}

TEST_F(UpdateViewTest, opensWithoutAMarkOnAnyButton) {
    check();
    EXPECT_TRUE(eventually([this] { return QApplication::focusWidget() == sheet(); }));
    press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), close());
    press(Qt::Key_Escape);
    updates->setPresented(true);
    EXPECT_EQ(sheet()->focusWidget(), sheet()) << "each time anew";
}

TEST_F(UpdateViewTest, theWindowWaitsBehindIt) {
    check();
    EXPECT_EQ(sheet()->windowModality(), Qt::WindowModal);
    auto* behind = window->windowHandle();
    auto* board = find<BoardView>();
    const auto center = [&](const char* square) {
        return board->mapTo(window.get(), board->squareRect(*Square::fromText(square)).center().toPoint());
    };
    QTest::mouseClick(behind, Qt::LeftButton, Qt::NoModifier, center("e2"));
    QTest::mouseClick(behind, Qt::LeftButton, Qt::NoModifier, center("e4"));
    QTest::keyClick(behind, Qt::Key_Space);
    EXPECT_TRUE(game->board().history.empty());
    EXPECT_FALSE(game->isPaused());
    press(Qt::Key_N, Qt::ControlModifier);
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_FALSE(game->isFlipped());

    press(Qt::Key_Escape);
    QTest::mouseClick(behind, Qt::LeftButton, Qt::NoModifier, center("e2"));
    QTest::mouseClick(behind, Qt::LeftButton, Qt::NoModifier, center("e4"));
    ASSERT_TRUE(eventually([behind] { return QGuiApplication::focusWindow() == behind; }));
    QTest::keyClick(behind, Qt::Key_Space);
    EXPECT_EQ(game->board().history.size(), 1U);
    EXPECT_TRUE(game->isPaused());
}

TEST_F(UpdateViewTest, dimsTheWindowWhileItIsShown) {
    const QImage before = window->grab().toImage();
    check();
    ASSERT_NE(find<WindowShade>(), nullptr);
    EXPECT_TRUE(find<WindowShade>()->isVisible());
    EXPECT_EQ(find<WindowShade>()->size(), window->size());
    EXPECT_LT(window->grab().toImage().pixelColor(5, 100).lightness(), before.pixelColor(5, 100).lightness());
    window->resize(1200, 800);
    EXPECT_EQ(find<WindowShade>()->size(), window->size());
    press(Qt::Key_Escape);
    EXPECT_FALSE(find<WindowShade>()->isVisible());
}

TEST_F(UpdateViewTest, staysInTheMiddleOfTheWindow) {
    check();
    const auto isCentred = [this] {
        const QPoint off = sheet()->geometry().center() - window->geometry().center();
        return off.manhattanLength() <= 2;
    };
    EXPECT_TRUE(isCentred());
    window->move(window->pos() + QPoint(37, 21));
    EXPECT_TRUE(isCentred());
    window->resize(1300, 900);
    EXPECT_TRUE(isCentred());
}

TEST_F(UpdateViewTest, theBarStandsStillForUsersWhoWantNoMotion) {
    system.reducedMotion = true;
    beChecking();
    EXPECT_TRUE(activity()->isVisible());
    EXPECT_FALSE(activity()->isRunning());
}

TEST_F(UpdateViewTest, theBarMovesOnlyWhereItCanBeSeen) {
    system.reducedMotion = false;
    beInstalling();
    EXPECT_TRUE(activity()->isRunning());
    press(Qt::Key_Escape);
    EXPECT_FALSE(activity()->isRunning());
    updates->setPresented(true);
    EXPECT_TRUE(activity()->isRunning());
    server().fileContents = "something else";
    finish();
    EXPECT_TRUE(isShown());
    EXPECT_FALSE(activity()->isRunning());
}

TEST_F(UpdateViewTest, longWordsOfTheFeedStayOnTheirLine) {
    release().version = QStringLiteral("2\n") + QString(100'000, u'0') + QStringLiteral("%1%2<b>");
    release().build = QStringLiteral("9\t%1") + QString(100'000, u'x');
    release().releaseNotes = QString(1'000'000, u'n');
    check();
    EXPECT_EQ(lines()[1], QStringLiteral("Velmorandix Orlix 2 ") + QString(38, u'0') +
                              QStringLiteral("… (build 9 %1") + QString(36, u'x') +
                              QStringLiteral("…) is available."));
    EXPECT_EQ(notes()->text().size(), 20'001);
    server().gate.close();
    updates->install();
    EXPECT_LT(messageText().size(), 120);
    finish();
}

TEST_F(UpdateViewTest, aLongMessageScrollsAndBeginsAtItsTop) {
    release().releaseNotes = QStringLiteral("A line.\n").repeated(200);
    check();
    EXPECT_EQ(message()->focusPolicy(), Qt::NoFocus);
    leaveResult(false, QByteArray("hdiutil: attach failed - no mountable file systems. ").repeated(100));
    updates->handleLaunch();
    ASSERT_TRUE(message()->isVisible());
    EXPECT_EQ(messageText().size(), 2001) << "and an ellipsis";
    EXPECT_GT(message()->verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(message()->verticalScrollBar()->value(), 0);
    EXPECT_LT(message()->geometry().bottom(), close()->y());
    EXPECT_GT(notes()->height(), 40) << "two lines of the notes are left";
    message()->setFocus();
    press(Qt::Key_End);
    press(Qt::Key_Down);
    EXPECT_GT(message()->verticalScrollBar()->value(), 0) << "by the keyboard";
}

TEST_F(UpdateViewTest, followsTheTheme) {
    check();
    EXPECT_EQ(sheet()->grab().toImage().pixelColor(10, 10),
              Theme::color(ColorRole::panel, Theme::Scheme::light));
    theme.setScheme(Theme::Scheme::dark);
    EXPECT_EQ(sheet()->grab().toImage().pixelColor(10, 10),
              Theme::color(ColorRole::panel, Theme::Scheme::dark));
}

TEST_F(UpdateViewTest, theMenuCommandPresentsACheck) {
    const auto* menu = find<ApplicationMenu>();
    ASSERT_FALSE(menu->actions().isEmpty());
    QAction* command = menu->actions().first();
    EXPECT_EQ(command->text(), QStringLiteral("Check for Updates…"));
    EXPECT_EQ(command->menuRole(), QAction::ApplicationSpecificRole);
    EXPECT_EQ(menu->title(), QStringLiteral("Velmorandix Orlix"));
    EXPECT_TRUE(find<QMenuBar>()->actions().contains(menu->menuAction()));
    server().gate.close();
    command->trigger();
    EXPECT_TRUE(updates->isChecking());
    EXPECT_TRUE(isShown());
    command->trigger();
    finish();
    EXPECT_EQ(server().begun, 1);
}

TEST_F(UpdateViewTest, theMenuCommandDoesNothingWhileASilentCheckRuns) {
    server().gate.close();
    updates->checkForUpdates(true);
    find<ApplicationMenu>()->actions().first()->trigger();
    EXPECT_FALSE(isShown()) << "checks never overlap";
    finish();
    EXPECT_EQ(server().begun, 1);
}

TEST_F(UpdateViewTest, itsHairlineIsTheOutermostPixelOfEverySideAtEveryPixelRatio) {
    beUpToDate();
    const QRgb line = theme.hairlineOn(theme.color(ColorRole::panel)).rgb();
    for (const int ratio : {1, 2, 3}) {
        QImage picture(sheet()->size() * ratio, QImage::Format_RGB32);
        picture.setDevicePixelRatio(ratio);
        sheet()->render(&picture, {}, {}, QWidget::DrawWindowBackground);
        const QPoint last(picture.width() - 1, picture.height() - 1);
        for (int depth = 0; depth < ratio; ++depth) {
            EXPECT_EQ(picture.pixel(depth, last.y() / 2), line) << ratio;
            EXPECT_EQ(picture.pixel(last.x() - depth, last.y() / 2), line) << ratio;
            EXPECT_EQ(picture.pixel(last.x() / 2, depth), line) << ratio;
            EXPECT_EQ(picture.pixel(last.x() / 2, last.y() - depth), line) << ratio;
        }
        EXPECT_NE(picture.pixel(ratio, last.y() / 2), line) << ratio;
        EXPECT_NE(picture.pixel(last.x() - ratio, last.y() / 2), line) << ratio;
    }
}

}  // namespace
}  // namespace orlix::test
