// One game's tags and moves, and their Portable Game Notation text. There is no reader.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "core/move_record.h"

namespace orlix {

struct PGNGame {
    std::string event;
    std::string site;
    std::string date;
    std::string round;
    std::string white;
    std::string black;
    std::string result;
    std::string timeControl;
    std::optional<std::string> initialFEN;
    std::vector<MoveRecord> moves;

    bool operator==(const PGNGame&) const = default;

    /// Today in the local time zone, "yyyy.MM.dd".
    static std::string currentDateString();
    /// The local date of that moment, "yyyy.MM.dd".
    static std::string dateString(std::chrono::system_clock::time_point moment);

    /// The tags, an empty line, and the movetext in lines of at most 80 characters, every line ended.
    std::string exportPGN() const;
};

}  // namespace orlix
