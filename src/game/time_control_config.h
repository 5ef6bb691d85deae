// Time controls: the eleven presets, custom times, and how an engine decides how long to think.
#pragma once

#include <QLatin1String>
#include <QString>
#include <QStringView>
#include <array>
#include <optional>
#include <variant>

namespace orlix {

enum class TimeControlPreset {
    bullet1_0,
    bullet2_1,
    blitz3_0,
    blitz3_2,
    blitz5_0,
    blitz5_3,
    rapid10_0,
    rapid15_10,
    classical30_0,
    custom,
    unlimited,
};
inline constexpr std::array allTimeControlPresets{
    TimeControlPreset::bullet1_0, TimeControlPreset::bullet2_1,  TimeControlPreset::blitz3_0,
    TimeControlPreset::blitz3_2,  TimeControlPreset::blitz5_0,   TimeControlPreset::blitz5_3,
    TimeControlPreset::rapid10_0, TimeControlPreset::rapid15_10, TimeControlPreset::classical30_0,
    TimeControlPreset::custom,    TimeControlPreset::unlimited,
};
QLatin1String rawValue(TimeControlPreset preset);
QString locKey(TimeControlPreset preset);
qint64 baseMinutes(TimeControlPreset preset);
qint64 incrementSeconds(TimeControlPreset preset);
bool isUnlimited(TimeControlPreset preset);
std::optional<TimeControlPreset> timeControlPresetFromRawValue(QStringView text);

struct FixedMoveTime {
    double seconds;
    bool operator==(const FixedMoveTime&) const = default;
};
struct FixedDepth {
    qint64 depth;  ///< plies
    bool operator==(const FixedDepth&) const = default;
};
struct GameClock {
    bool operator==(const GameClock&) const = default;
};
using EngineThinkingMode = std::variant<FixedMoveTime, FixedDepth, GameClock>;

struct TimeControlConfig {
    TimeControlPreset preset = TimeControlPreset::blitz5_3;
    qint64 customBaseMinutes = 5;
    qint64 customIncrementSeconds = 3;
    EngineThinkingMode engineThinkingMode = GameClock{};

    bool operator==(const TimeControlConfig&) const = default;

    bool isUnlimited() const;
    qint64 effectiveBaseSeconds() const;  ///< an overflowing product ends the program
    qint64 effectiveIncrementSeconds() const;
    QString pgnString() const;  ///< value of the PGN TimeControl tag: "300+3", "600", "-"
};

}  // namespace orlix
