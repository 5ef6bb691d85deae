// The window with its update sheet over a world of fakes: a feed, a server and images that the test makes up.
#pragma once

#include <QAbstractButton>

#include "shell_fixture.h"
#include "ui/controls/activity_bar.h"
#include "ui/controls/notes_view.h"
#include "ui/controls/scrolled_label.h"
#include "ui/controls/text_label.h"
#include "ui/update_view.h"

namespace orlix::test {

class UpdateSheetTest : public ShellTest {
  protected:
    UpdateView* sheet() const { return window->findChild<UpdateView*>(); }
    bool isShown() const { return sheet() != nullptr && sheet()->isVisible(); }
    QAbstractButton* button(const char* name) const {
        return sheet()->findChild<QAbstractButton*>(QString::fromLatin1(name));
    }
    QAbstractButton* close() const { return button("closeUpdates"); }
    QAbstractButton* checkAgain() const { return button("checkAgain"); }
    QAbstractButton* install() const { return button("installUpdate"); }
    ActivityBar* activity() const { return sheet()->findChild<ActivityBar*>(); }
    NotesView* notes() const { return sheet()->findChild<NotesView*>(); }
    ScrolledLabel* message() const { return sheet()->findChild<ScrolledLabel*>(); }
    /// Title, release and warning, as far as they are shown, from the top.
    QStringList lines() const {
        QStringList shown;
        for (const TextLabel* label :
             sheet()->findChildren<TextLabel*>(QString(), Qt::FindDirectChildrenOnly))
            if (label->isVisible()) shown.append(label->text());
        return shown;
    }
    QString messageText() const { return message()->isVisible() ? message()->text() : QString(); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
        QTest::keyClick(sheet()->windowHandle(), key, modifiers);
    }

    FakeTransport& server() { return updateWorld.transport; }
    UpdateInfo& release() { return updateWorld.info; }

    void finish() {
        server().gate.open();
        ASSERT_TRUE(eventually([this] { return !updates->isChecking() && !updates->isInstalling(); }));
    }
    /// The user looks for updates and waits for the answer.
    void check() {
        server().response.body = release().toJson();
        updates->checkForUpdates(false);
        finish();
    }
    void beUpToDate() {
        release().version = QStringLiteral("1.9");
        release().build = QStringLiteral("41");
        check();
    }
    void failToCheck(const QString& why = QStringLiteral("Connection refused")) {
        server().response.error = why;
        check();
    }
    void beChecking() {
        server().gate.close();
        updates->checkForUpdates(false);
    }
    void beInstalling() {
        check();
        server().gate.close();
        updates->install();
    }
    void failToInstall() {
        check();
        updateWorld.signatures.byName["Running.app"].info.teamIdentifier.reset();
        updates->install();
        finish();
    }
    void leaveResult(bool succeeded, const char* text) {
        const UpdateInstallResult result{succeeded, QString::fromUtf8(text), QStringLiteral("1.9")};
        writeFile(updateWorld.statusPath(), result.toJson().toStdString());
    }
    void TearDown() override { server().gate.open(); }
};

}  // namespace orlix::test
