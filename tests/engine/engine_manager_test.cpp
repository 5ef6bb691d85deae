#include "engine/engine_manager.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <chrono>
#include <initializer_list>
#include <mutex>

#include "engine/engine_test.h"
#include "support/event_pump.h"
#include "support/fake_defaults_store.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_file_tests.h"
#include "support/fake_process_launcher.h"
#include "support/fake_system_settings.h"

namespace orlix {
namespace {

const QString key = QStringLiteral("Velmorandix_InstalledEngines");

QStringList texts(std::initializer_list<const char*> lines) {
    QStringList list;
    for (const char* line : lines)
        list.append(QString::fromUtf8(line));
    return list;
}

EngineConfiguration engine(const char* name, const char* path) {
    EngineConfiguration engine;
    engine.name = QString::fromUtf8(name);
    engine.executablePath = QString::fromUtf8(path);
    return engine;
}

using Result = EngineManager::EngineTestResult;

// Built field by field: with a sanitizer on, the compiler takes the optional texts of an aggregate for unset.
Result succeeded(const std::optional<QString>& name, const std::optional<QString>& author) {
    Result result;
    result.success = true;
    result.engineName = name;
    result.author = author;
    return result;
}

Result failed(const QString& error) {
    Result result;
    result.error = error;
    return result;
}

QStringList names(const QList<EngineConfiguration>& engines) {
    QStringList names;
    for (const EngineConfiguration& record : engines)
        names.append(record.name);
    return names;
}

QStringList paths(const QList<EngineConfiguration>& engines) {
    QStringList paths;
    for (const EngineConfiguration& record : engines)
        paths.append(record.executablePath);
    return paths;
}

// Answers what is written with `chunks`, on the writing thread; everything else may be looked at meanwhile.
class AnsweringLauncher : public ProcessLauncher {
  public:
    QByteArrayList chunks;
    QString launchError;

    Launched launch(const QString&, const QStringList&, OutputHandler onOutput) override {
        const std::lock_guard lock(mutex_);
        thread_ = QThread::currentThreadId();
        if (!launchError.isEmpty()) return {nullptr, launchError};
        return {std::make_unique<Process>(*this, std::move(onOutput)), QString()};
    }

    QByteArray written() const { return locked(written_); }
    bool isTerminated() const { return locked(isTerminated_); }
    Qt::HANDLE thread() const { return locked(thread_); }

  private:
    struct Process : ChildProcess {
        Process(AnsweringLauncher& owner, OutputHandler handler)
            : launcher(owner), onOutput(std::move(handler)) {}
        void write(QByteArray bytes) override {
            {
                const std::lock_guard lock(launcher.mutex_);
                launcher.written_ += bytes;
            }
            for (const QByteArray& chunk : std::as_const(launcher.chunks))
                onOutput(chunk);
        }
        void terminate() override {
            const std::lock_guard lock(launcher.mutex_);
            launcher.isTerminated_ = true;
        }
        AnsweringLauncher& launcher;
        OutputHandler onOutput;
    };

    template <typename T>
    T locked(const T& value) const {
        const std::lock_guard lock(mutex_);
        return value;
    }

    mutable std::mutex mutex_;
    QByteArray written_;
    bool isTerminated_ = false;
    Qt::HANDLE thread_ = nullptr;
};

class EngineManagerTest : public ::testing::Test {
  protected:
    EngineManager& make() {
        manager_ = std::make_unique<EngineManager>(
            EngineManager::Platform{defaults_, files_, system_, launcher_, dialogs_});
        return *manager_;
    }
    void store(const QList<EngineConfiguration>& engines) { defaults_.setData(key, toJson(engines)); }
    std::optional<QList<EngineConfiguration>> stored() const {
        return engineConfigurationsFromJson(defaults_.data(key).value_or(QByteArray()));
    }
    void makeExecutable(std::initializer_list<const char*> list) {
        for (const char* path : list)
            files_.executables.insert(QString::fromUtf8(path));
    }
    Result test() {
        Result result;
        int calls = 0;
        manager_->testEngine(QStringLiteral("/engine"), [&](const Result& outcome) {
            EXPECT_EQ(QThread::currentThread(), manager_->thread());
            result = outcome;
            ++calls;
        });
        EXPECT_EQ(calls, 0) << "the answer comes through the event loop";
        EXPECT_TRUE(pumpUntil([&] { return calls > 0; }));
        QTest::qWait(2);
        EXPECT_EQ(calls, 1);
        return result;
    }

    FakeDefaultsStore defaults_;
    FakeFileTests files_;
    FakeSystemSettings system_;
    AnsweringLauncher launcher_;
    test::FakeFileDialogs dialogs_;
    std::unique_ptr<EngineManager> manager_;
};

TEST_F(EngineManagerTest, nothingStoredAndNothingInstalledIsAnEmptyRegistry) {
    make();
    EXPECT_TRUE(manager_->availableEngines().isEmpty());
    EXPECT_EQ(manager_->selectedWhiteEngine(), std::nullopt);
    EXPECT_EQ(manager_->selectedBlackEngine(), std::nullopt);
    EXPECT_EQ(stored(), QList<EngineConfiguration>());
}

TEST_F(EngineManagerTest, readsTheStoredListAndSelectsItsFirstRecord) {
    const QList<EngineConfiguration> engines{engine("A", "/a"), engine("B", "/b")};
    store(engines);
    make();
    EXPECT_EQ(manager_->availableEngines(), engines);
    EXPECT_EQ(manager_->selectedWhiteEngine(), engines[0]);
    EXPECT_EQ(manager_->selectedBlackEngine(), engines[0]);
}

TEST_F(EngineManagerTest, aStoredListIsNotScannedInto) {
    makeExecutable({"/usr/bin/stockfish"});
    store({engine("A", "/a")});
    EXPECT_EQ(names(make().availableEngines()), texts({"A"}));
}

TEST_F(EngineManagerTest, unreadableDataLeadsToTheScan) {
    makeExecutable({"/usr/bin/stockfish"});
    for (const char* data : {"", "[{}]", "garbage", "[]"}) {
        defaults_.setData(key, data);
        EXPECT_EQ(names(make().availableEngines()), texts({"Stockfish"})) << data;
    }
}

TEST_F(EngineManagerTest, scansThePathsInOrderAndThisSystemsOwnAfterThem) {
    makeExecutable({"/usr/local/bin/komodo", "/opt/homebrew/bin/komodo", "/opt/homebrew/bin/crafty",
                    "/usr/local/bin/gnuchess", "/opt/homebrew/bin/gnuchess", "/usr/bin/stockfish",
                    "/usr/local/bin/stockfish", "/opt/homebrew/bin/stockfish", "/usr/games/stockfish",
                    "/usr/games/fairy-stockfish", "/usr/local/bin/crafty", "/usr/bin/komodo"});
    system_.enginePaths = texts(
        {"/usr/games/stockfish", "/usr/games/absent", "/usr/games/fairy-stockfish", "/usr/bin/stockfish"});
    make();
    EXPECT_EQ(paths(manager_->availableEngines()),
              texts({"/opt/homebrew/bin/stockfish", "/usr/local/bin/stockfish", "/usr/bin/stockfish",
                     "/opt/homebrew/bin/gnuchess", "/usr/local/bin/gnuchess", "/opt/homebrew/bin/crafty",
                     "/opt/homebrew/bin/komodo", "/usr/local/bin/komodo", "/usr/games/stockfish",
                     "/usr/games/fairy-stockfish"}));
    EXPECT_EQ(names(manager_->availableEngines()),
              texts({"Stockfish", "Stockfish", "Stockfish", "Gnuchess", "Gnuchess", "Crafty", "Komodo",
                     "Komodo", "Stockfish", "Fairy-Stockfish"}));
    EXPECT_EQ(stored(), manager_->availableEngines());
    EXPECT_TRUE(launcher_.thread() == nullptr) << "the scan runs no engine";
}

TEST_F(EngineManagerTest, aScannedRecordHasTheDefaults) {
    makeExecutable({"/usr/bin/stockfish"});
    EngineConfiguration expected = engine("Stockfish", "/usr/bin/stockfish");
    expected.author = QStringLiteral("Auto-detected");
    const EngineConfiguration found = make().availableEngines().first();
    expected.id = found.id;
    EXPECT_EQ(found, expected);
    EXPECT_EQ(manager_->selectedWhiteEngine(), found);
    EXPECT_EQ(manager_->selectedBlackEngine(), found);
}

TEST_F(EngineManagerTest, aScanAddsNoPathTwice) {
    makeExecutable({"/usr/bin/stockfish", "/opt/homebrew/bin/stockfish"});
    store({engine("Mine", "/opt/homebrew/bin/stockfish")});
    make();
    QSignalSpy changed(manager_.get(), &EngineManager::changed);
    manager_->scanDefaultPaths();
    EXPECT_EQ(paths(manager_->availableEngines()),
              texts({"/opt/homebrew/bin/stockfish", "/usr/bin/stockfish"}));
    EXPECT_EQ(changed.size(), 1);
    manager_->scanDefaultPaths();
    EXPECT_EQ(manager_->availableEngines().size(), 2);
}

TEST_F(EngineManagerTest, findsTheSiblingAtItsFirstCandidatePath) {
    const QStringList candidates =
        texts({"/home/player/bin/quillmere-uci", "/Applications/Quillmere.app/Contents/Helpers/quillmere-uci",
               "/home/player/Applications/Quillmere.app/Contents/Helpers/quillmere-uci",
               "/opt/homebrew/bin/quillmere-uci", "/usr/local/bin/quillmere-uci"});
    for (const QString& path : candidates)
        files_.executables.insert(path);
    for (const QString& path : candidates) {
        defaults_.remove(key);
        make();
        ASSERT_EQ(manager_->availableEngines().size(), 1);
        EngineConfiguration expected = engine("Quillmere", "");
        expected.executablePath = path;
        expected.author = QStringLiteral("The Quillmere Authors");
        expected.id = manager_->availableEngines().first().id;
        EXPECT_EQ(manager_->availableEngines().first(), expected);
        files_.executables.remove(path);
    }
    defaults_.remove(key);
    EXPECT_TRUE(make().availableEngines().isEmpty());
}

TEST_F(EngineManagerTest, aFoundSiblingComesFirstAndIsStored) {
    store({engine("A", "/a")});
    makeExecutable({"/usr/local/bin/quillmere-uci", "/usr/bin/stockfish"});
    EXPECT_EQ(names(make().availableEngines()), texts({"Quillmere", "A"}));
    EXPECT_EQ(stored(), manager_->availableEngines());
    EXPECT_EQ(manager_->selectedWhiteEngine()->name, QStringLiteral("Quillmere"));
}

TEST_F(EngineManagerTest, aKnownSiblingIsNotLookedForAgain) {
    makeExecutable({"/usr/local/bin/quillmere-uci"});
    for (const EngineConfiguration& known :
         {engine("my QUILLMERE build", "/x"), engine("X", "/q/Quillmere2/x")}) {
        store({engine("A", "/a"), known});
        EXPECT_EQ(names(make().availableEngines()), QStringList({known.name, QStringLiteral("A")}));
    }
}

TEST_F(EngineManagerTest, aScanAlsoTriesTheSibling) {
    store({engine("Quillmere elsewhere", "/q")});
    make();
    makeExecutable({"/opt/homebrew/bin/quillmere-uci", "/usr/local/bin/quillmere-uci", "/usr/bin/stockfish"});
    manager_->scanDefaultPaths();
    EXPECT_EQ(names(manager_->availableEngines()), texts({"Quillmere elsewhere", "Quillmere", "Stockfish"}));
    EXPECT_EQ(manager_->availableEngines()[1].executablePath,
              QStringLiteral("/opt/homebrew/bin/quillmere-uci"));
    EXPECT_EQ(manager_->availableEngines()[1].author, QStringLiteral("Auto-detected"));
}

TEST_F(EngineManagerTest, putsSiblingsFirstAndKeepsTheOrderOtherwise) {
    const QList<EngineConfiguration> engines{engine("Stockfish", "/s"), engine("My Quillmere build", "/m"),
                                             engine("Crafty", "/c"), engine("X", "/opt/quillMERE/x"),
                                             engine("Quill mere", "/y")};
    EXPECT_EQ(names(EngineManager::prioritized(engines)),
              texts({"My Quillmere build", "X", "Stockfish", "Crafty", "Quill mere"}));
    EXPECT_TRUE(EngineManager::prioritized({}).isEmpty());
}

TEST_F(EngineManagerTest, comparesNamesByTheRulesOfTheLocale) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Turkish));
    // In Turkish a capital I is the capital of the dotless letter, so this is another word there.
    const QList<EngineConfiguration> engines{engine("A", "/a"), engine("QUILLMERE", "/b"),
                                             engine("Quillmere", "/c")};
    EXPECT_EQ(names(EngineManager::prioritized(engines)), texts({"Quillmere", "A", "QUILLMERE"}));
    QLocale::setDefault(before);
    EXPECT_EQ(names(EngineManager::prioritized(engines)), texts({"QUILLMERE", "Quillmere", "A"}));
}

TEST_F(EngineManagerTest, selectionsAreAnnouncedAndNotStored) {
    store({engine("A", "/a"), engine("B", "/b")});
    make();
    const int writes = defaults_.totalWriteCount();
    QSignalSpy changed(manager_.get(), &EngineManager::changed);
    manager_->setSelectedWhiteEngine(manager_->availableEngines()[1]);
    manager_->setSelectedWhiteEngine(manager_->availableEngines()[1]);
    manager_->setSelectedBlackEngine(std::nullopt);
    EXPECT_EQ(changed.size(), 2);
    EXPECT_EQ(manager_->selectedWhiteEngine(), manager_->availableEngines()[1]);
    EXPECT_EQ(manager_->selectedBlackEngine(), std::nullopt);
    EXPECT_EQ(defaults_.totalWriteCount(), writes);
}

TEST_F(EngineManagerTest, aScanKeepsASelectionThatIsStillListed) {
    store({engine("A", "/a"), engine("B", "/b")});
    make();
    manager_->setSelectedWhiteEngine(manager_->availableEngines()[1]);
    EngineConfiguration stranger = manager_->availableEngines()[1];
    stranger.elo += 1;
    manager_->setSelectedBlackEngine(stranger);
    manager_->scanDefaultPaths();
    EXPECT_EQ(manager_->selectedWhiteEngine()->name, QStringLiteral("B"));
    EXPECT_EQ(manager_->selectedBlackEngine()->name, QStringLiteral("A"))
        << "an unequal record is not listed";
}

TEST_F(EngineManagerTest, removingARecordKeepsTheSelectionUntilTheNextStart) {
    store({engine("A", "/a"), engine("B", "/b")});
    make();
    QSignalSpy changed(manager_.get(), &EngineManager::changed);
    manager_->removeEngine(manager_->availableEngines().first());
    EXPECT_EQ(names(manager_->availableEngines()), texts({"B"}));
    EXPECT_EQ(stored(), manager_->availableEngines());
    EXPECT_EQ(changed.size(), 1);
    EXPECT_EQ(manager_->selectedWhiteEngine()->name, QStringLiteral("A"));
    make();
    EXPECT_EQ(manager_->selectedWhiteEngine()->name, QStringLiteral("B"));
}

TEST_F(EngineManagerTest, removesEveryRecordWithTheId) {
    EngineConfiguration twin = engine("A", "/a");
    EngineConfiguration other = twin;
    other.name = QStringLiteral("B");
    store({twin, engine("C", "/c"), other});
    make().removeEngine(other);
    EXPECT_EQ(names(manager_->availableEngines()), texts({"C"}));
}

TEST_F(EngineManagerTest, updatesTheLimitInTheListAndInTheSelections) {
    store({engine("A", "/a"), engine("B", "/b")});
    make();
    const Uuid id = manager_->availableEngines()[0].id;
    manager_->setSelectedBlackEngine(manager_->availableEngines()[1]);
    QSignalSpy changed(manager_.get(), &EngineManager::changed);
    manager_->updateEngineConfig(id, true, 99999);
    EXPECT_TRUE(manager_->availableEngines()[0].limitElo);
    EXPECT_EQ(manager_->availableEngines()[0].elo, 99999) << "not clamped here";
    EXPECT_EQ(manager_->selectedWhiteEngine(), manager_->availableEngines()[0]);
    EXPECT_EQ(manager_->selectedBlackEngine(), manager_->availableEngines()[1]);
    EXPECT_FALSE(manager_->availableEngines()[1].limitElo);
    EXPECT_EQ(stored(), manager_->availableEngines());
    EXPECT_EQ(changed.size(), 1);
    manager_->setSelectedBlackEngine(manager_->availableEngines()[0]);
    manager_->updateEngineConfig(id, false, 1000);
    EXPECT_EQ(manager_->selectedBlackEngine()->elo, 1000);
}

TEST_F(EngineManagerTest, asksForAnEngineFile) {
    make();
    std::optional<std::optional<QString>> picked;
    const auto pick = [&] {
        manager_->pickEngineFile([&](const std::optional<QString>& path) { picked = path; });
    };
    pick();
    ASSERT_EQ(dialogs_.openRequests.size(), 1u);
    EXPECT_EQ(dialogs_.openRequests[0].title, QStringLiteral("Select UCI Chess Engine Executable"));
    EXPECT_EQ(dialogs_.openRequests[0].prompt, QStringLiteral("Choose Engine"));
    dialogs_.answer(QStringLiteral("/x"));
    EXPECT_EQ(picked, std::optional<QString>(QStringLiteral("/x")));
    pick();
    dialogs_.answer(std::nullopt);
    ASSERT_TRUE(picked.has_value());
    EXPECT_EQ(*picked, std::nullopt);
}

TEST_F(EngineManagerTest, testsAnEngineOffTheMainThread) {
    make();
    launcher_.chunks = {"id name Good Engine \r\nid author  The author\nuciok\r\n"};
    const EngineManager::EngineTestResult result = test();
    EXPECT_EQ(result, succeeded(QStringLiteral("Good Engine"), QStringLiteral(" The author")));
    EXPECT_EQ(launcher_.written(), "uci\nquit\n");
    EXPECT_TRUE(launcher_.isTerminated());
    EXPECT_NE(launcher_.thread(), QThread::currentThreadId());
}

TEST_F(EngineManagerTest, aTestedEngineNeedNotNameItself) {
    make();
    launcher_.chunks = {"id name \nuciok\n"};
    EXPECT_EQ(test(), succeeded(std::nullopt, std::nullopt));
}

TEST_F(EngineManagerTest, theTestReadsEachChunkByItself) {
    make();
    launcher_.chunks = {"id name Ha", "lf\nid author \xff\n", "id author Kept", "uciok"};
    EXPECT_EQ(test(), succeeded(QStringLiteral("Ha"), QStringLiteral("Kept")));
}

TEST_F(EngineManagerTest, theTestReportsALaunchThatFails) {
    make();
    launcher_.launchError = QStringLiteral("No such file or directory");
    EXPECT_EQ(test(), failed(QStringLiteral("No such file or directory")));
}

TEST_F(EngineManagerTest, theTestGivesUpAfterThreeSeconds) {
    static_assert(EngineTest::timeLimit == std::chrono::seconds(3));
    make();
    launcher_.chunks = {"id name Slow\n", "uci", "ok\n"};
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_EQ(test(), failed(QStringLiteral("Engine did not reply with 'uciok' within 3 seconds")));
    EXPECT_GE(elapsed.elapsed(), 3000);
    EXPECT_LT(elapsed.elapsed(), 15'000);
    EXPECT_TRUE(launcher_.isTerminated());
}

TEST_F(EngineManagerTest, addsATestedEngine) {
    struct {
        std::optional<QString> customName;
        QByteArray reply;
        const char* name;
        const char* author;
    } const cases[] = {
        {std::nullopt, "id name Good\nid author One\nuciok\n", "Good", "One"},
        {QStringLiteral("  Mine \n"), "id name Good\nuciok\n", "Mine", ""},
        {QStringLiteral(" \t "), "id name Good\nuciok\n", "Good", ""},
        {std::nullopt, "uciok\n", "some engine", ""},
    };
    store({engine("First", "/first")});
    for (const auto& [customName, reply, name, author] : cases) {
        make();
        const qsizetype before = manager_->availableEngines().size();
        launcher_.chunks = {reply};
        std::optional<EngineConfiguration> added;
        QSignalSpy changed(manager_.get(), &EngineManager::changed);
        manager_->addEngine(
            QStringLiteral("/dir/some engine"), customName,
            [&](const std::optional<EngineConfiguration>& record, const std::optional<QString>& error) {
                EXPECT_EQ(error, std::nullopt);
                EXPECT_EQ(manager_->availableEngines().last(), record);
                added = record;
            });
        ASSERT_TRUE(pumpUntil([&] { return added.has_value(); }));
        EngineConfiguration expected = engine(name, "/dir/some engine");
        expected.author = QString::fromUtf8(author);
        expected.id = added->id;
        EXPECT_EQ(*added, expected);
        EXPECT_EQ(manager_->availableEngines().size(), before + 1);
        EXPECT_EQ(stored(), manager_->availableEngines());
        EXPECT_EQ(changed.size(), 1);
    }
}

TEST_F(EngineManagerTest, doesNotAddAnEngineThatFailsItsTest) {
    make();
    launcher_.launchError = QStringLiteral("Permission denied");
    const int writes = defaults_.totalWriteCount();
    std::optional<QString> text;
    manager_->addEngine(
        QStringLiteral("/x"), std::nullopt,
        [&](const std::optional<EngineConfiguration>& record, const std::optional<QString>& error) {
            EXPECT_EQ(record, std::nullopt);
            text = error;
        });
    ASSERT_TRUE(pumpUntil([&] { return text.has_value(); }));
    EXPECT_EQ(text, QStringLiteral("Engine failed UCI test: Permission denied"));
    EXPECT_TRUE(manager_->availableEngines().isEmpty());
    EXPECT_EQ(defaults_.totalWriteCount(), writes);
}

TEST_F(EngineManagerTest, aTestUnderWayEndsWithTheManager) {
    make();
    bool isCalled = false;
    manager_->testEngine(QStringLiteral("/silent"), [&](const auto&) { isCalled = true; });
    ASSERT_TRUE(pumpUntil([&] { return !launcher_.written().isEmpty(); }));
    QElapsedTimer elapsed;
    elapsed.start();
    manager_.reset();
    EXPECT_LT(elapsed.elapsed(), 2000) << "the test itself goes on for three seconds";
    QTest::qWait(5);
    EXPECT_FALSE(isCalled);
}

TEST_F(EngineManagerTest, testsSeveralEnginesAtATime) {
    make();
    launcher_.chunks = {"uciok\n"};
    int done = 0;
    for (int i = 0; i < 5; ++i)
        manager_->testEngine(QStringLiteral("/x"), [&](const auto& r) { done += r.success; });
    EXPECT_TRUE(pumpUntil([&] { return done == 5; }));
}

TEST_F(EngineManagerTest, theRegisteredInstanceIsShared) {
    EngineManager::registerShared(&make());
    EXPECT_EQ(&EngineManager::shared(), manager_.get());
    EngineManager::registerShared(nullptr);
}

}  // namespace
}  // namespace orlix
