#include "game/time_control_config.h"

#include "game/checked_arithmetic.h"

namespace orlix {
namespace {

struct PresetRow {
    TimeControlPreset preset;
    const char* rawValue;
    qint64 baseMinutes;
    qint64 incrementSeconds;
};

// In the order of the enumeration. The row of `custom` is what the preset itself says; a game with it takes
// its times from the configuration's own fields.
constexpr std::array<PresetRow, allTimeControlPresets.size()> presetRows{{
    {TimeControlPreset::bullet1_0, "bullet_1_0", 1, 0},
    {TimeControlPreset::bullet2_1, "bullet_2_1", 2, 1},
    {TimeControlPreset::blitz3_0, "blitz_3_0", 3, 0},
    {TimeControlPreset::blitz3_2, "blitz_3_2", 3, 2},
    {TimeControlPreset::blitz5_0, "blitz_5_0", 5, 0},
    {TimeControlPreset::blitz5_3, "blitz_5_3", 5, 3},
    {TimeControlPreset::rapid10_0, "rapid_10_0", 10, 0},
    {TimeControlPreset::rapid15_10, "rapid_15_10", 15, 10},
    {TimeControlPreset::classical30_0, "classical_30_0", 30, 0},
    {TimeControlPreset::custom, "custom", 5, 0},
    {TimeControlPreset::unlimited, "unlimited", 0, 0},
}};

constexpr bool rowsFollowTheEnumeration() {
    for (std::size_t i = 0; i < presetRows.size(); ++i) {
        if (presetRows[i].preset != allTimeControlPresets[i] ||
            static_cast<std::size_t>(presetRows[i].preset) != i) {
            return false;
        }
    }
    return true;
}
static_assert(rowsFollowTheEnumeration());

const PresetRow& row(TimeControlPreset preset) {
    return presetRows[static_cast<std::size_t>(preset)];
}

}  // namespace

QLatin1String rawValue(TimeControlPreset preset) {
    return QLatin1String(row(preset).rawValue);
}

QString locKey(TimeControlPreset preset) {
    return QLatin1String("time_") + rawValue(preset);
}

qint64 baseMinutes(TimeControlPreset preset) {
    return row(preset).baseMinutes;
}

qint64 incrementSeconds(TimeControlPreset preset) {
    return row(preset).incrementSeconds;
}

bool isUnlimited(TimeControlPreset preset) {
    return preset == TimeControlPreset::unlimited;
}

std::optional<TimeControlPreset> timeControlPresetFromRawValue(QStringView text) {
    for (const PresetRow& candidate : presetRows) {
        if (text == QLatin1String(candidate.rawValue)) return candidate.preset;
    }
    return std::nullopt;
}

bool TimeControlConfig::isUnlimited() const {
    return orlix::isUnlimited(preset);
}

qint64 TimeControlConfig::effectiveBaseSeconds() const {
    const qint64 minutes = preset == TimeControlPreset::custom ? customBaseMinutes : baseMinutes(preset);
    return checkedMultiply(minutes, 60);
}

qint64 TimeControlConfig::effectiveIncrementSeconds() const {
    return preset == TimeControlPreset::custom ? customIncrementSeconds : incrementSeconds(preset);
}

QString TimeControlConfig::pgnString() const {
    if (isUnlimited()) return QStringLiteral("-");
    const QString base = QString::number(effectiveBaseSeconds());
    const qint64 increment = effectiveIncrementSeconds();
    if (increment < 1) return base;
    return base + QLatin1Char('+') + QString::number(increment);
}

}  // namespace orlix
