#include "house/include_direction.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace orlix::house {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Sample {
    const char* name;
    const char* path;
    const char* text;
};

TEST(IncludeDirection, wrongArrowsAreReported) {
    const std::vector<Sample> wrong{
        {"core includes Qt", "core/square.h", "#include <QString>"},
        {"core includes a Qt module header", "core/square.h", "#include <QtGlobal>"},
        {"core includes POSIX", "core/uuid.cpp", "#include <unistd.h>"},
        {"core includes a system folder", "core/uuid.cpp", "#include <sys/random.h>"},
        {"core includes platform", "core/uuid.cpp", "#include \"platform/time_source.h\""},
        {"core includes records", "core/chess_board.cpp", "#include \"records/pgn_game.h\""},
        {"the text of a game includes Qt", "records/pgn_game.cpp", "#include <QDate>"},
        {"the text of a game includes platform", "records/pgn_game.h", "#include \"platform/time_source.h\""},
        {"the text of a game includes the exporter", "records/pgn_game.h",
         "#include \"records/pgn_exporter.h\""},
        {"records includes game", "records/pgn_exporter.cpp", "#include \"game/game_manager.h\""},
        {"platform includes core", "platform/qt/qt_time_source.cpp", "#include \"core/square.h\""},
        {"engine includes records", "engine/engine_manager.cpp", "#include \"records/pgn_game.h\""},
        {"engine includes game", "engine/uci_engine_process.cpp", "#include \"game/game_manager.h\""},
        {"game includes ui", "game/game_manager.cpp", "#include \"ui/board_view.h\""},
        {"game includes automatch", "game/game_manager.cpp", "#include \"automatch/automatch_manager.h\""},
        {"game includes l10n", "game/game_manager.cpp", "#include \"l10n/sound_manager.h\""},
        {"l10n includes another header of game", "l10n/sound_manager.cpp",
         "#include \"game/game_manager.h\""},
        {"l10n includes core", "l10n/localization_manager.cpp", "#include \"core/piece.h\""},
        {"update includes l10n", "update/update_service.cpp", "#include \"l10n/language.h\""},
        {"updater includes ui", "updater/main.cpp", "#include \"ui/theme.h\""},
        {"automatch includes l10n", "automatch/automatch_manager.cpp", "#include \"l10n/sound_manager.h\""},
        {"automatch includes ui", "automatch/automatch_manager.cpp", "#include \"ui/main_view.h\""},
        {"a header beside the file", "ui/board_view.cpp", "#include \"board_view.h\""},
        {"a way around by dots", "game/chess_clock.cpp", "#include \"../ui/theme.h\""},
        {"spaces do not hide it", "game/chess_clock.cpp", "  #  include   \"ui/theme.h\"  // please"},
        {"an Objective-C import", "platform/macos/mac_sound_player.mm", "#import \"l10n/sound_manager.h\""},
        {"a folder that nobody knows", "misc/helper.cpp", "#include \"core/square.h\""},
        {"a controller says shared()", "game/game_manager.cpp",
         "    EngineManager::shared().scanDefaultPaths();"},
        {"platform says shared()", "platform/qt/qt_pasteboard.cpp",
         "auto& x = orlix::GameManager::shared();"},
    };
    for (const Sample& sample : wrong) {
        SCOPED_TRACE(sample.name);
        EXPECT_EQ(directionFaults(sample.path, sample.text).size(), 1U);
    }
}

TEST(IncludeDirection, rightArrowsAreNotReported) {
    const std::vector<Sample> right{
        {"core uses itself", "core/chess_board.h",
         "#include <array>\n#include <string_view>\n#include \"core/square.h\""},
        {"the text of a game uses the rules", "records/pgn_game.h",
         "#include \"core/move_record.h\"\n#include <string>"},
        {"records uses platform and Qt", "records/pgn_exporter.cpp",
         "#include <QString>\n#include \"platform/file_store.h\""},
        {"engine uses core", "engine/engine_evaluation.h", "#include \"core/piece.h\""},
        {"game uses engine", "game/game_manager.cpp", "#include \"engine/engine_manager.h\""},
        {"automatch listens to game", "automatch/automatch_manager.h", "#include \"game/game_listener.h\""},
        {"l10n plays the game's sounds", "l10n/sound_manager.h", "#include \"game/game_sounds.h\""},
        {"a system's folder uses the seam", "platform/linux/linux_sound_player.h",
         "#include \"platform/sound_player.h\""},
        {"ui uses all below", "ui/main_view.cpp",
         "#include \"game/game_manager.h\"\n#include \"automatch/a.h\""},
        {"moc output at the end of a file", "ui/theme.cpp", "#include \"moc_theme.cpp\""},
        {"moc output", "platform/qt/qt_time_source.cpp", "#include \"qt_time_source.moc\""},
        {"the application builds everything", "application.cpp",
         "#include \"ui/main_view.h\"\n#include \"core/square.h\""},
        {"the main function runs the application", "main.cpp", "#include \"application.h\""},
        {"a view says shared()", "ui/board_view.cpp", "GameManager::shared().flipBoard();"},
        {"the application says shared()", "application.cpp", "GameManager::shared().flipBoard();"},
        {"the definition of shared()", "game/game_manager.cpp",
         "GameManager& GameManager::shared() { return *registered; }"},
        {"a comment about shared()", "game/game_manager.cpp", "// GameManager::shared() asserts"},
        {"an include in a comment", "core/square.h", "// #include <QString>"},
    };
    for (const Sample& sample : right) {
        SCOPED_TRACE(sample.name);
        EXPECT_THAT(directionFaults(sample.path, sample.text), IsEmpty());
    }
}

TEST(IncludeDirection, aFaultNamesItsLine) {
    EXPECT_THAT(directionFaults("game/chess_clock.h", "#pragma once\n\n#include \"ui/theme.h\"\n"),
                ElementsAre("3: folder \"game\" must not include \"ui/theme.h\""));
}

TEST(IncludeDirection, everySourceFileKeepsThePicture) {
    const fs::path source = fs::path(ORLIX_SOURCE_DIR) / "src";
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(source)) {
        const fs::path suffix = entry.path().extension();
        if (suffix != ".h" && suffix != ".cpp" && suffix != ".mm") continue;
        ++files;
        std::ifstream stream(entry.path());
        const std::string text{std::istreambuf_iterator<char>(stream), {}};
        const std::string path = fs::relative(entry.path(), source).generic_string();
        for (const std::string& fault : directionFaults(path, text))
            ADD_FAILURE() << "src/" << path << ":" << fault;
    }
    EXPECT_GT(files, 50);
}

}  // namespace
}  // namespace orlix::house
