#include "platform/qt/qt_file_dialogs.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <vector>

#include "platform/qt/qt_pasteboard.h"

namespace orlix {
namespace {

QFileDialog* openPanel() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* panel = qobject_cast<QFileDialog*>(widget); panel != nullptr && panel->isVisible()) {
            return panel;
        }
    }
    return nullptr;
}

class QtFileDialogsTest : public ::testing::Test {
  protected:
    QTemporaryDir folder;
    QWidget window;
    QtFileDialogs dialogs;
    std::vector<std::optional<QString>> answers;

    void SetUp() override {
        // Qt's panel remembers its size and folders in a settings file: not in the user's.
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.path());
        dialogs.setWindow(&window);
    }
    FileDialogs::Completion collect() {
        return [this](std::optional<QString> path) { answers.push_back(std::move(path)); };
    }
    /// Opens the save panel in the test's folder, without waiting for it.
    QFileDialog* savePanel() {
        dialogs.save(
            {QStringLiteral("Save PGN Game"), QStringLiteral("velmorandix_game.pgn"), QStringLiteral("pgn")},
            collect());
        QFileDialog* panel = openPanel();
        if (panel != nullptr) panel->setDirectory(folder.path());
        return panel;
    }
    static void typeName(QFileDialog* panel, const QString& name) {
        panel->findChild<QLineEdit*>()->setText(name);
        panel->findChild<QLineEdit*>()->setFocus();
    }
    static void settle() {
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

TEST_F(QtFileDialogsTest, savePanelShowsTitleNameAndKindAndIsModalToTheWindow) {
    QFileDialog* panel = savePanel();
    ASSERT_NE(panel, nullptr);
    EXPECT_TRUE(answers.empty());
    EXPECT_EQ(panel->windowTitle(), QStringLiteral("Save PGN Game"));
    EXPECT_EQ(panel->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(panel->findChild<QLineEdit*>()->text(), QStringLiteral("velmorandix_game.pgn"));
    EXPECT_EQ(panel->nameFilters(), QStringList{QStringLiteral("PGN (*.pgn)")});
    EXPECT_EQ(panel->windowModality(), Qt::WindowModal);
    EXPECT_EQ(panel->parentWidget(), &window);
    EXPECT_FALSE(panel->testOption(QFileDialog::ReadOnly)) << "new folders can be made";
}

TEST_F(QtFileDialogsTest, confirmingAnswersThePathOnceAndLetsGoOfThePanel) {
    const QPointer<QFileDialog> panel = savePanel();
    ASSERT_NE(panel, nullptr);
    typeName(panel, QStringLiteral("mine.pgn"));
    panel->QDialog::accept();
    settle();

    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0], folder.filePath(QStringLiteral("mine.pgn")));
    EXPECT_EQ(panel, nullptr);
}

TEST_F(QtFileDialogsTest, missingSuffixIsAdded) {
    QFileDialog* panel = savePanel();
    ASSERT_NE(panel, nullptr);
    typeName(panel, QStringLiteral("mine"));
    QTest::keyClick(panel->findChild<QLineEdit*>(), Qt::Key_Return);
    settle();

    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0], folder.filePath(QStringLiteral("mine.pgn")));
}

TEST_F(QtFileDialogsTest, cancellingAnswersNothingOnce) {
    const QPointer<QFileDialog> panel = savePanel();
    ASSERT_NE(panel, nullptr);
    QTest::keyClick(panel, Qt::Key_Escape);
    settle();

    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0], std::nullopt);
    EXPECT_EQ(panel, nullptr);
}

TEST_F(QtFileDialogsTest, nextPanelOpensWhereTheUserConfirmedLast) {
    QFileDialog* first = savePanel();
    ASSERT_NE(first, nullptr);
    first->QDialog::accept();
    settle();

    dialogs.open({QStringLiteral("Select"), QStringLiteral("Choose Engine")}, collect());
    QFileDialog* second = openPanel();
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->directory().absolutePath(), folder.path());
    second->reject();
    settle();
}

TEST_F(QtFileDialogsTest, openPanelTakesOneExistingFileAndHasItsPrompt) {
    QFile engine(folder.filePath(QStringLiteral("engine")));
    ASSERT_TRUE(engine.open(QIODevice::WriteOnly));
    engine.close();
    dialogs.open({QStringLiteral("Select UCI Chess Engine Executable"), QStringLiteral("Choose Engine")},
                 collect());
    QFileDialog* panel = openPanel();
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->windowTitle(), QStringLiteral("Select UCI Chess Engine Executable"));
    EXPECT_EQ(panel->labelText(QFileDialog::Accept), QStringLiteral("Choose Engine"));
    EXPECT_EQ(panel->acceptMode(), QFileDialog::AcceptOpen);
    EXPECT_EQ(panel->fileMode(), QFileDialog::ExistingFile);

    panel->setDirectory(folder.path());
    panel->selectFile(engine.fileName());
    panel->QDialog::accept();
    settle();
    ASSERT_EQ(answers.size(), 1u);
    EXPECT_EQ(answers[0], engine.fileName());
}

TEST(QtPasteboard, textReplacesEverythingThatWasThere) {
    QtPasteboard pasteboard;
    pasteboard.setText(QStringLiteral("first"));
    pasteboard.setText(QStringLiteral("1. e4 ♔"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("1. e4 ♔"));
}

}  // namespace
}  // namespace orlix
