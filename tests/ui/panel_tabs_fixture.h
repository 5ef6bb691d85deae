// The tabs of the side panel that hear from engines: the panel over fakes, with engines that say what the
// test tells them, or with real child processes.
#pragma once

#include <QAccessible>

#include "panel_fixture.h"
#include "shell.h"
#include "support/event_pump.h"
#include "ui/assistive_technology.h"
#include "ui/controls/text_label.h"

namespace orlix::test {

/// Hears what the panel's notices tell assistive technology, while it is listening.
class NoticeListener : public AssistiveTechnology {
  public:
    struct Heard {
        QAccessible::Event type;
        QString name;  ///< of the notice, when the event came
        bool isVisible;
    };
    bool isListening = false;
    std::vector<Heard> heard;

    bool isActive() const override { return isListening; }
    void tell(QAccessibleEvent& event) override {
        const QAccessibleInterface* about = event.accessibleInterface();
        ASSERT_NE(about, nullptr);
        EXPECT_EQ(about->role(), QAccessible::Notification);
        heard.push_back({event.type(), about->text(QAccessible::Name), !about->state().invisible});
    }
};

class PanelTabsTest : public testing::Test {
  protected:
    static constexpr int panelHeight = 900;

    virtual ProcessLauncher& processes() { return puppets; }
    virtual const FileTests& fileTests() { return files; }

    void SetUp() override {
        engines = std::make_unique<EngineManager>(
            EngineManager::Platform{defaults, fileTests(), system, processes(), dialogs});
        game =
            std::make_unique<GameManager>(time, *engines, sounds, [this](const EngineConfiguration& config) {
                return std::make_unique<UCIEngineProcess>(config, processes(), fileTests());
            });
        automatch = std::make_unique<AutomatchManager>(time, *game, *engines, sounds);
        loc = std::make_unique<LocalizationManager>(defaults, system);
        theme.setScheme(Theme::Scheme::light);
        panel = std::make_unique<RightPanelView>(*game, *engines, *loc, *automatch, theme, exporter, time,
                                                 nullptr, listener);
        panel->resize(RightPanelView::minimumPanelWidth, panelHeight);
        panel->show();
        panel->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(panel.get()));
    }
    void TearDown() override {
        panel.reset();
        automatch.reset();
        game.reset();
    }

    template <typename T = QAbstractButton>
    T* find(const char* name) const {
        T* found = panel->findChild<T*>(QString::fromLatin1(name));
        EXPECT_TRUE(found) << name;
        return found;
    }
    static void click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }

    /// Lets queued work happen, in real and in fake time, until `condition` holds.
    template <typename Condition>
    bool eventually(Condition condition) {
        return pumpUntil([&] {
            time.advance(10ms);
            return condition();
        });
    }
    /// Lets what the engines said arrive and be shown.
    void settle() {
        for (int turn = 0; turn < 3; ++turn) {
            QTest::qWait(5);
            time.advance(100ms);
        }
        QCoreApplication::sendPostedEvents();
    }
    void registerEngines(int count = 2) {
        if (count > 0) files.executables.insert(QStringLiteral("/usr/bin/stockfish"));
        if (count > 1) files.executables.insert(QStringLiteral("/usr/local/bin/gnuchess"));
        engines->scanDefaultPaths();
    }

    /// Against the engine, the person having White and having moved: the engine thinks.
    void playAgainstEngine() {
        registerEngines();
        game->setGameMode(GameMode::humanVsEngine);
        game->startNewGame();
        game->handleSquareClick(*Square::fromText("e2"));
        game->handleSquareClick(*Square::fromText("e4"));
        settle();
    }
    void playBetweenEngines() {
        registerEngines();
        engines->setSelectedBlackEngine(engines->availableEngines().at(1));
        game->setGameMode(GameMode::engineVsEngine);
        game->startNewGame();
        settle();
        settle();
    }
    void say(const QByteArray& lines) {
        puppets.say(lines);
        settle();
    }

    /// Reports every visible text that needs more room than it has, and counts the texts looked at.
    int expectAllFit(const std::string& where) const {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        int count = 0;
        for (const QWidget* widget : panel->findChildren<QWidget*>()) {
            const auto* control = dynamic_cast<const ShowsText*>(widget);
            if (!control || !widget->isVisible()) continue;
            for (const ShownText& shown : control->shownTexts()) {
                ++count;
                EXPECT_LE(shown.needed.width(), shown.room.width() + 0.5)
                    << where << ": " << utf8(shown.text);
                EXPECT_LE(shown.needed.height(), shown.room.height() + 0.5)
                    << where << ": " << utf8(shown.text);
            }
            const QWidget* parent = widget->parentWidget();
            if (parent && !parent->parentWidget()->inherits("QAbstractScrollArea")) {
                EXPECT_TRUE(parent->rect().contains(widget->geometry()))
                    << where << ": " << widget->metaObject()->className();
            }
        }
        return count;
    }
    template <typename Body>
    void forEveryLanguageAndWidth(Body body) {
        for (const Language language : allLanguages) {
            loc->setCurrentLanguage(language);
            for (const int width : {400, 460}) {
                panel->resize(width, 700);
                body(utf8(displayName(language)) + " " + std::to_string(width));
            }
        }
    }

    FakeTimeSource time;
    FakeDefaultsStore defaults;
    FakeSystemSettings system;
    ListedFiles files;
    FakeFileDialogs dialogs;
    FakeFileStore store;
    FakePasteboard pasteboard;
    PuppetLauncher puppets;
    FakeGameSounds sounds;
    Theme theme;
    PGNExporter exporter{dialogs, store, pasteboard};
    NoticeListener listener;
    std::unique_ptr<EngineManager> engines;
    std::unique_ptr<GameManager> game;
    std::unique_ptr<AutomatchManager> automatch;
    std::unique_ptr<LocalizationManager> loc;
    std::unique_ptr<RightPanelView> panel;
};

}  // namespace orlix::test
