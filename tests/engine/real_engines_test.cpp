// Real engines: recorded dialogues replayed, and the same dialogue live with whatever is installed.
#include <gtest/gtest.h>

#include <QFile>
#include <algorithm>
#include <random>

#include "core/chess_board.h"
#include "engine/engine_manager.h"
#include "engine/uci_engine_process.h"
#include "platform/posix/posix_process_launcher.h"
#include "platform/qt/qt_file_tests.h"
#include "support/event_pump.h"
#include "support/fake_defaults_store.h"
#include "support/fake_file_dialogs.h"
#include "support/fake_file_tests.h"
#include "support/fake_process_launcher.h"
#include "support/fake_system_settings.h"

namespace orlix {
namespace {

const QString mateInOne = QStringLiteral("6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1");
const QString almostMated = QStringLiteral("7k/8/5K2/6Q1/8/8/8/8 b - - 0 1");

struct Search {
    const char* bestMove;
    qint64 depth;
    std::optional<qint64> scoreCp;
    std::optional<qint64> mateIn;
    qint64 nodes;
    std::optional<qint64> nps;
    qint64 timeMs;
    const char* pv;
};

struct Recording {
    const char* file;
    qsizetype infoLines;
    std::vector<Search> searches;  // what the engine had said last when it gave each best move
};

const std::vector<Recording>& recordings() {
    static const std::vector<Recording> list{
        {"stockfish",
         21,
         {{"g1f3", 8, 74, {}, 1616, 47529, 34, "g1f3 g8f6 f3e5"},
          {"d1d8", 6, {}, 1, 120, 120000, 1, "d1d8"},
          {"h8h7", 4, -786, {}, 4, 4000, 1, "h8h7"}}},
        {"ethereal-chess",
         20,
         {{"g1f3", 8, 82, {}, 6939, 315000, 21, "g1f3 b8c6 a2a3 h7h6 d2d4 e5d4 f3d4"},
          {"d1d8", 6, {}, 1, 29, 29000, 0, "d1d8"},
          {"h8h7", 4, -1615, {}, 24, 24000, 0, "h8h7 f6f7 h7h8 f7f8"},
          {"h8h7", 4, -1615, {}, 24, 24000, 0, "h8h7 f6f7 h7h8 f7f8"}}},
        {"fairy-stockfish",
         18,
         {{"d2d4", 8, 110, {}, 5433, 493909, 11, "d2d4 e5d4 d1d4 b8c6 d4e3 g8f6 b1c3"},
          {"d1d8", 6, {}, 1, 120, 120000, 1, "d1d8"},
          {"h8h7", 4, {}, -1, 16, 16000, 1, "h8h7 g5g7"}}},
        {"toga2",
         68,
         {{"g1f3", 8, 26, {}, 40136, 0, 87, "g1f3 b8c6 d2d4 e5d4 f3d4 g8f6 b1c3 d7d5 d4c6 b7c6"},
          {"d1d8", 6, {}, 1, 138, 0, 0, "d1d8"},
          {"h8h7", 4, {}, -1, 61, 0, 0, "h8h7 g5g7"}}},
    };
    return list;
}

QByteArray fixture(const char* name) {
    QFile file(QStringLiteral(ORLIX_FIXTURES "/uci/%1.txt").arg(QLatin1String(name)));
    if (!file.open(QIODevice::ReadOnly)) ADD_FAILURE() << "no fixture " << name;
    return file.readAll();
}

// Replays a recording in pieces of at most `pieceSize` bytes and compares everything it says.
void replay(const Recording& recording, int pieceSize) {
    SCOPED_TRACE(recording.file);
    FakeFileTests files;
    files.executables.insert(QStringLiteral("/engine"));
    FakeProcessLauncher launcher;
    EngineConfiguration config;
    config.executablePath = QStringLiteral("/engine");
    UCIEngineProcess engine(config, launcher, files);
    bool isReady = false;
    engine.start([&](bool ready) { isReady = ready; });
    qsizetype updates = 0;
    engine.setOnEvaluationUpdate([&](const EngineEvaluation&) { ++updates; });
    std::vector<std::pair<QString, EngineEvaluation>> answers;
    engine.search({}, [&](const QString& move) { answers.emplace_back(move, engine.currentEvaluation()); });

    const QByteArray text = fixture(recording.file);
    std::mt19937 random(7);
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype size = 1 + static_cast<qsizetype>(random() % static_cast<unsigned>(pieceSize));
        launcher.last().say(text.mid(at, size));
        QCoreApplication::processEvents();
        at += size;
    }
    ASSERT_TRUE(pumpUntil([&] { return answers.size() == recording.searches.size(); }));
    EXPECT_TRUE(isReady);
    EXPECT_EQ(updates, recording.infoLines);
    for (std::size_t i = 0; i < answers.size(); ++i) {
        SCOPED_TRACE(i);
        const Search& expected = recording.searches[i];
        const EngineEvaluation& said = answers[i].second;
        EXPECT_EQ(answers[i].first, QLatin1String(expected.bestMove));
        EXPECT_EQ(said.depth, expected.depth);
        EXPECT_EQ(said.scoreCp, expected.scoreCp);
        EXPECT_EQ(said.mateIn, expected.mateIn);
        EXPECT_EQ(said.nodes, expected.nodes);
        EXPECT_EQ(said.nps, expected.nps);
        EXPECT_EQ(said.timeMs, expected.timeMs);
        EXPECT_EQ(said.pv.join(u' '), QLatin1String(expected.pv));
    }
    qsizetype lines = 0;
    const QStringList all = QString::fromUtf8(text).split(u'\n');
    for (const QString& line : all)
        lines += !line.trimmed().isEmpty();
    const qsizetype received = std::count_if(engine.logLines().cbegin(), engine.logLines().cend(),
                                             [](const QString& entry) { return entry.startsWith(u"< "); });
    EXPECT_EQ(received, lines);
}

TEST(RealEngines, recordedDialoguesSayTheSameHoweverTheyAreCutUp) {
    for (const Recording& recording : recordings()) {
        for (const int pieceSize : {7, 300, 65536})
            replay(recording, pieceSize);
    }
}

class LiveEngines : public ::testing::TestWithParam<const char*> {
  protected:
    void SetUp() override {
        path_ = QString::fromLatin1(GetParam());
#if defined(__linux__)
        ASSERT_TRUE(files_.isExecutableFile(path_)) << "scripts/test installs it";
#else
        // A Mac has the engines that its user wants.
        if (!files_.isExecutableFile(path_)) GTEST_SKIP() << "not installed";
#endif
    }
    QtFileTests files_;
    PosixProcessLauncher launcher_;
    QString path_;
};

TEST_P(LiveEngines, goThroughTheWholeDialogue) {
    EngineConfiguration config;
    config.executablePath = path_;
    config.threads = 1;
    config.hashMB = 16;
    UCIEngineProcess engine(config, launcher_, files_);
    bool isReady = false;
    engine.start([&](bool ready) { isReady = ready; });
    ASSERT_TRUE(pumpUntil([&] { return isReady; }));
    engine.sendNewGame();
    QString move;
    const auto search = [&](const std::optional<QString>& fen, const QStringList& moves, qint64 depth) {
        move.clear();
        engine.sendPosition(fen, moves);
        engine.search({.depth = depth}, [&](const QString& text) { move = text; });
        return pumpUntil([&] { return !move.isEmpty(); });
    };
    ASSERT_TRUE(search(std::nullopt, {QStringLiteral("e2e4"), QStringLiteral("e7e5")}, 8));
    ChessBoard board;
    board.play(*Move::fromUci("e2e4"));
    board.play(*Move::fromUci("e7e5"));
    const std::optional<Move> parsed = Move::fromUci(move.toStdString());
    ASSERT_TRUE(parsed) << move.toStdString();
    EXPECT_TRUE(board.play(*parsed)) << move.toStdString();
    EXPECT_GE(engine.currentEvaluation().depth, 1);
    EXPECT_TRUE(engine.currentEvaluation().scoreCp.has_value());
    EXPECT_FALSE(engine.currentEvaluation().pv.isEmpty());

    ASSERT_TRUE(search(mateInOne, {}, 6));
    EXPECT_EQ(move, QStringLiteral("d1d8"));
    EXPECT_EQ(engine.currentEvaluation().mateIn, 1);
    EXPECT_EQ(engine.currentEvaluation().formattedScore(), QStringLiteral("+M1"));
    ASSERT_TRUE(search(almostMated, {}, 4));
    EXPECT_EQ(move, QStringLiteral("h8h7"));
    engine.terminate();
    EXPECT_TRUE(pumpUntil([&] { return launcher_.childCount() == 0; }));
}

TEST_P(LiveEngines, passTheEngineTest) {
    FakeDefaultsStore defaults;
    FakeSystemSettings system;
    test::FakeFileDialogs dialogs;
    EngineManager manager(EngineManager::Platform{defaults, files_, system, launcher_, dialogs});
    std::optional<EngineManager::EngineTestResult> result;
    manager.testEngine(path_, [&](const EngineManager::EngineTestResult& outcome) { result = outcome; });
    ASSERT_TRUE(pumpUntil([&] { return result.has_value(); }));
    EXPECT_TRUE(result->success) << result->error.value_or(QString()).toStdString();
    // The engine test cuts up each read by itself and puts no line together from two. Glaurung does not
    // buffer its output: it writes "id name ", "Glaurung 2.2" and the newline one by one, so whether its name
    // is found depends on which of them share a read. Its "uciok" is one write, and found however the reads
    // fall.
    if (!path_.endsWith(QStringLiteral("glaurung"))) {
        EXPECT_TRUE(result->engineName && !result->engineName->isEmpty());
    }
}

#if defined(__linux__)
constexpr const char* installed[] = {"/usr/games/stockfish", "/usr/games/ethereal-chess", "/usr/games/toga2",
                                     "/usr/games/fairy-stockfish", "/usr/games/glaurung"};
#else
constexpr const char* installed[] = {"/opt/homebrew/bin/stockfish"};
#endif
INSTANTIATE_TEST_SUITE_P(Installed, LiveEngines, ::testing::ValuesIn(installed));

}  // namespace
}  // namespace orlix
