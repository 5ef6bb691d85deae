// One finished game of an automatch series. A value; made by the automatch manager alone, never changed.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <optional>

#include "core/uuid.h"

namespace orlix {

struct AutomatchGameRecord {
    Uuid id = Uuid::random();
    qint64 gameNumber = 0;  ///< within its series, from 1
    QString whiteEngineName;
    QString blackEngineName;
    bool whiteIsEngine1 = true;
    std::optional<qint64> whiteEngineElo;  ///< present only when White played with the Elo limit
    std::optional<qint64> blackEngineElo;
    QString result;                           ///< "1-0", "0-1" or "1/2-1/2"
    std::optional<QString> winnerEngineName;  ///< absent for a draw
    QString reason;                           ///< German, whatever the interface language is
    qint64 movesCount = 0;                    ///< plies
    QStringList movesUCI;
    QString pgn;          ///< as the game manager exported it when the game ended
    QDateTime timestamp;  ///< when the record was made, UTC, to the millisecond

    bool operator==(const AutomatchGameRecord&) const = default;

    /// "1 - 0", "0 - 1", or "½ - ½" for any other result.
    QString resultBadgeText() const;
};

/// An object with the field names as keys; absent fields are left out, the timestamp is an ISO 8601 text.
QByteArray toJson(const AutomatchGameRecord& record);

/// Nothing when the data is not such an object, lacks a required key or has a value of another type. An
/// absent field may also be null.
std::optional<AutomatchGameRecord> automatchGameRecordFromJson(const QByteArray& json);

}  // namespace orlix
