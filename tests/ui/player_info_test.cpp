#include "ui/player_info.h"

#include "shell_fixture.h"

namespace orlix {
namespace {

constexpr PieceColor white = PieceColor::white;
constexpr PieceColor black = PieceColor::black;

struct Case {
    const char* name;
    PieceColor color;
    GameMode mode;
    PieceColor humanColor;
    std::optional<QString> engineName;
    PlayerInfo expected;
};

class PlayerInfoTable : public ::testing::TestWithParam<Case> {};

TEST_P(PlayerInfoTable, namesThePlayerOfTheColour) {
    const Case& row = GetParam();
    EXPECT_EQ(playerInfo(row.color, row.mode, row.humanColor, row.engineName), row.expected);
}

const std::optional<QString> stockfish = QStringLiteral("Stockfish 15.1");

INSTANTIATE_TEST_SUITE_P(
    PlayerInfo, PlayerInfoTable,
    ::testing::Values(
        Case{"twoPeopleWhite", white, GameMode::humanVsHuman, white, {}, {QStringLiteral("Player 1"), false}},
        Case{"twoPeopleBlack", black, GameMode::humanVsHuman, white, {}, {QStringLiteral("Player 2"), false}},
        Case{"twoPeopleWhoeverIsTheHuman",
             white,
             GameMode::humanVsHuman,
             black,
             stockfish,
             {QStringLiteral("Player 1"), false}},
        Case{"twoEnginesWhite", white, GameMode::engineVsEngine, white, stockfish, {*stockfish, true}},
        Case{"twoEnginesBlack", black, GameMode::engineVsEngine, white, stockfish, {*stockfish, true}},
        Case{"twoEnginesWhiteMissing",
             white,
             GameMode::engineVsEngine,
             white,
             {},
             {QStringLiteral("White Engine"), true}},
        Case{"twoEnginesBlackMissing",
             black,
             GameMode::engineVsEngine,
             white,
             {},
             {QStringLiteral("Black Engine"), true}},
        Case{"humanWithWhite", white, GameMode::humanVsEngine, white, {}, {QStringLiteral("Player"), false}},
        Case{"humanWithBlack", black, GameMode::humanVsEngine, black, {}, {QStringLiteral("Player"), false}},
        Case{"engineWithBlack", black, GameMode::humanVsEngine, white, stockfish, {*stockfish, true}},
        Case{"engineWithWhite", white, GameMode::humanVsEngine, black, stockfish, {*stockfish, true}},
        Case{"engineMissing",
             black,
             GameMode::humanVsEngine,
             white,
             {},
             {QStringLiteral("UCI Engine"), true}}),
    [](const auto& instance) { return instance.param.name; });

class PlayerInfoOfAGame : public test::ShellTest {};

TEST_F(PlayerInfoOfAGame, comesFromTheEngineProcessOfItsSide) {
    installEngine();
    buildWindow();
    game->startNewGame();
    EXPECT_EQ(playerInfo(black, *game), (PlayerInfo{QStringLiteral("Puppet"), true}));
    EXPECT_EQ(playerInfo(white, *game), (PlayerInfo{QStringLiteral("Player"), false}));
    EXPECT_EQ(find<MainView>()->playerInfo(black), playerInfo(black, *game));
}

TEST_F(PlayerInfoOfAGame, emptySeatsAreThoseThatAnEngineShouldTake) {
    buildWindow();
    const auto seatsIn = [this](GameMode mode, PlayerColorChoice choice) {
        game->setGameMode(mode);
        game->setColorChoice(choice);
        game->startNewGame();
        return emptyEngineSeats(*game);
    };
    using Seats = std::vector<PieceColor>;
    EXPECT_EQ(seatsIn(GameMode::humanVsEngine, PlayerColorChoice::white), Seats{black});
    EXPECT_EQ(seatsIn(GameMode::humanVsEngine, PlayerColorChoice::black), Seats{white});
    EXPECT_EQ(seatsIn(GameMode::engineVsEngine, PlayerColorChoice::white), (Seats{white, black}));
    EXPECT_EQ(seatsIn(GameMode::humanVsHuman, PlayerColorChoice::white), Seats{});
}

TEST_F(PlayerInfoOfAGame, seatWithAnEngineIsNotEmpty) {
    installEngine();
    buildWindow();
    game->startNewGame();
    EXPECT_TRUE(emptyEngineSeats(*game).empty());
}

}  // namespace
}  // namespace orlix
