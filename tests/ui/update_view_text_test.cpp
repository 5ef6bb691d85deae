// What the update sheet says, in every language, to those who see it and to those who hear it.
#include <QAccessible>
#include <QTextEdit>

#include "ui/controls/text_fit.h"
#include "ui/menus.h"
#include "update_view_fixture.h"

namespace orlix::test {
namespace {

using Kind = UpdateMessage::Kind;

class UpdateSheetTexts : public UpdateSheetTest {
  protected:
    void SetUp() override { showWindowForTwoPeople(); }

    static void giveLongNotes(UpdateInfo& info) {
        info.releaseNotes = QStringLiteral("Something that is better now than it was before.\n").repeated(40);
    }
    /// Every shown text has the room it needs, inside the sheet, and no two parts overlap.
    void expectAllFit(const std::string& where) {
        QCoreApplication::sendPostedEvents();
        QList<const QWidget*> parts;
        for (const QWidget* part : sheet()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
            if (part->isVisible()) parts.append(part);
        for (const QWidget* part : parts) {
            EXPECT_TRUE(sheet()->rect().adjusted(24, 24, -24, -24).contains(part->geometry()))
                << where << ": " << part->metaObject()->className() << " from " << part->x() << " to "
                << part->geometry().right();
            for (const QWidget* other : parts)
                EXPECT_TRUE(part == other || !part->geometry().intersects(other->geometry()))
                    << where << ": " << part->metaObject()->className();
        }
        int count = 0;
        for (const QWidget* widget : sheet()->findChildren<QWidget*>()) {
            const auto* control = dynamic_cast<const ShowsText*>(widget);
            if (control == nullptr || !widget->isVisible()) continue;
            for (const ShownText& shown : control->shownTexts()) {
                ++count;
                const std::string text = where + ": " + shown.text.left(60).toStdString();
                EXPECT_LE(shown.needed.width(), shown.room.width() + 0.5) << text;
                EXPECT_LE(shown.needed.height(), shown.room.height() + 0.5) << text;
            }
        }
        EXPECT_GE(count, 3) << where;
    }
};

struct State {
    const char* name;
    std::function<void()> reach;
};

class UpdateSheetStates : public UpdateSheetTexts {
  protected:
    std::vector<State> states() {
        return {
            {"checking", [this] { beChecking(); }},
            {"up to date", [this] { beUpToDate(); }},
            {"check failed", [this] { failToCheck(); }},
            {"check failed at length",
             [this] {
                 failToCheck(QStringLiteral("The certificate of the server is not valid. ").repeated(3));
             }},
            {"available", [this] { check(); }},
            {"available with notes",
             [this] {
                 giveLongNotes(release());
                 check();
             }},
            {"available but unverifiable",
             [this] {
                 giveLongNotes(release());
                 release().sha256.reset();
                 check();
             }},
            {"unverifiable and checking",
             [this] {
                 giveLongNotes(release());
                 release().sha256.reset();
                 check();
                 beChecking();
             }},
            {"installing",
             [this] {
                 giveLongNotes(release());
                 beInstalling();
             }},
            {"not installed",
             [this] {
                 giveLongNotes(release());
                 failToInstall();
             }},
            {"updater not started",
             [this] {
                 giveLongNotes(release());
                 check();
                 updates->install();
                 finish();
                 updateWorld.starter.error = ENOENT;
                 updates->launchScheduledInstallerIfNeeded();
             }},
            {"installed",
             [this] {
                 leaveResult(true, "Velmorandix Orlix 1.9 was installed.");
                 updates->handleLaunch();
             }},
        };
    }
};

TEST_F(UpdateSheetStates, fitInEveryLanguage) {
    const std::size_t count = states().size();
    for (std::size_t index = 0; index < count; ++index) {
        // Each begins in a window of its own.
        window.reset();
        updates.reset();
        updateWorld.info = UpdateWorld().info;
        updateWorld.transport.response.error.clear();
        updateWorld.signatures.byName["Running.app"].info.teamIdentifier = "TEAM123456";
        updateWorld.starter.error = 0;
        showWindowForTwoPeople();
        const State state = states()[index];
        state.reach();
        ASSERT_TRUE(isShown()) << state.name;
        for (const Language language : allLanguages) {
            loc.setCurrentLanguage(language);
            expectAllFit(state.name + (" in " + rawValue(language).toStdString()));
        }
        loc.setCurrentLanguage(Language::english);
        server().gate.open();
    }
}

TEST_F(UpdateSheetTexts, followTheLanguage) {
    release().sha256.reset();
    check();
    const QString english = checkAgain()->accessibleName();
    for (const Language language : {Language::german, Language::dutch, Language::french}) {
        loc.setCurrentLanguage(language);
        EXPECT_EQ(lines(), (QStringList{
                               extraText(language, ExtraText::softwareUpdate),
                               extraText(language, ExtraText::releaseAvailable)
                                   .arg(QStringLiteral("1.10"), QStringLiteral("42")),
                               extraText(language, ExtraText::releaseUnverifiable),
                           }));
        EXPECT_EQ(sheet()->windowTitle(), lines().first());
        EXPECT_EQ(close()->accessibleName(), loc.text("btn_close"));
        EXPECT_EQ(checkAgain()->accessibleName(), extraText(language, ExtraText::checkAgain));
        EXPECT_EQ(install()->accessibleName(), extraText(language, ExtraText::installRelease));
        EXPECT_NE(checkAgain()->accessibleName(), english);
        EXPECT_EQ(find<ApplicationMenu>()->actions().first()->text(),
                  extraText(language, ExtraText::checkForUpdates));
    }
}

TEST_F(UpdateSheetTexts, theMessageSpeaksTheLanguageAndLeavesReasonsAlone) {
    failToCheck(QStringLiteral("Connection refused (%1)"));
    loc.setCurrentLanguage(Language::german);
    EXPECT_EQ(messageText(),
              QStringLiteral("Die Suche nach Updates ist fehlgeschlagen: Connection refused (%1)"));
    loc.setCurrentLanguage(Language::english);
    EXPECT_EQ(messageText(), QStringLiteral("Update check failed: Connection refused (%1)"));
}

struct Wording {
    UpdateMessage message;
    ExtraText text;
};

// The controller's own words, for logs and tests, and what an English reader sees are the same.
TEST(UpdateMessages, areTheSameInTheTableOfTexts) {
    const QString value = QStringLiteral("2.0");
    for (const Wording& item : {
             Wording{{Kind::checking}, ExtraText::updateChecking},
             Wording{{Kind::upToDate, value}, ExtraText::updateUpToDate},
             Wording{{Kind::checkFailed, value}, ExtraText::updateCheckFailed},
             Wording{{Kind::verifying, value}, ExtraText::updateVerifying},
             Wording{{Kind::verified}, ExtraText::updateVerified},
             Wording{{Kind::updaterNotStarted, value}, ExtraText::updaterNotStarted},
         }) {
        QString english = extraText(Language::english, item.text);
        if (!item.message.detail.isEmpty()) english = english.arg(value);
        EXPECT_EQ(item.message.text(), english);
    }
    EXPECT_EQ((UpdateMessage{Kind::asItStands, value}).text(), value);
}

class UpdateSheetAccessibility : public UpdateSheetTexts {
  protected:
    QAccessibleInterface* node(QWidget* widget) const {
        return QAccessible::queryAccessibleInterface(widget);
    }
    QString nameOf(QWidget* widget) const { return node(widget)->text(QAccessible::Name); }
};

TEST_F(UpdateSheetAccessibility, isADialogWithATitle) {
    check();
    EXPECT_EQ(node(sheet())->role(), QAccessible::Dialog);
    EXPECT_EQ(nameOf(sheet()), QStringLiteral("Software Update"));
}

TEST_F(UpdateSheetAccessibility, everythingThatIsShownIsReached) {
    giveLongNotes(release());
    beInstalling();
    QStringList names;
    std::function<void(QAccessibleInterface*)> collect = [&](QAccessibleInterface* from) {
        for (int index = 0; index < from->childCount(); ++index) {
            QAccessibleInterface* child = from->child(index);
            if (child->state().invisible) continue;
            names += child->text(QAccessible::Name);
            collect(child);
        }
    };
    collect(node(sheet()));
    for (const QString& text :
         {QStringLiteral("Software Update"),
          QStringLiteral("Velmorandix Orlix 1.10 (build 42) is available."), QStringLiteral("Release notes"),
          QStringLiteral("Downloading and verifying Velmorandix Orlix 1.10…"), QStringLiteral("Close"),
          QStringLiteral("Check Again"), QStringLiteral("Download, Install & Relaunch")})
        EXPECT_TRUE(names.contains(text)) << text.toStdString();
}

TEST_F(UpdateSheetAccessibility, theNotesCanBeRead) {
    release().releaseNotes = QStringLiteral("- Faster\n- Calmer");
    check();
    auto* reader = notes()->findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    QAccessibleTextInterface* text = node(reader)->textInterface();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->text(0, text->characterCount()), *release().releaseNotes);
    EXPECT_TRUE(node(reader)->state().readOnly);
}

TEST_F(UpdateSheetAccessibility, buttonsSayWhetherTheyWorkAndPressThemselves) {
    beInstalling();
    EXPECT_EQ(node(install())->role(), QAccessible::PushButton);
    EXPECT_TRUE(node(install())->state().disabled);
    EXPECT_TRUE(node(checkAgain())->state().disabled);
    EXPECT_FALSE(node(close())->state().disabled);
    node(close())->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(eventually([this] { return !isShown(); }));
}

}  // namespace
}  // namespace orlix::test
