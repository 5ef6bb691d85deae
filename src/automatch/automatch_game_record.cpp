#include "automatch/automatch_game_record.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "engine/json_values.h"

namespace orlix {
namespace {

// The stored form's keys.
constexpr QLatin1String idKey("id");
constexpr QLatin1String gameNumberKey("gameNumber");
constexpr QLatin1String whiteEngineNameKey("whiteEngineName");
constexpr QLatin1String blackEngineNameKey("blackEngineName");
constexpr QLatin1String whiteIsEngine1Key("whiteIsEngine1");
constexpr QLatin1String whiteEngineEloKey("whiteEngineElo");
constexpr QLatin1String blackEngineEloKey("blackEngineElo");
constexpr QLatin1String resultKey("result");
constexpr QLatin1String winnerEngineNameKey("winnerEngineName");
constexpr QLatin1String reasonKey("reason");
constexpr QLatin1String movesCountKey("movesCount");
constexpr QLatin1String movesUCIKey("movesUCI");
constexpr QLatin1String pgnKey("pgn");
constexpr QLatin1String timestampKey("timestamp");

using orlix::readValue;

bool readValue(const QJsonValue& value, QDateTime& out) {
    out = QDateTime::fromString(value.toString(), Qt::ISODateWithMs).toUTC();
    return out.isValid();
}

bool readValue(const QJsonValue& value, QStringList& out) {
    const QJsonArray array = value.toArray();
    for (const QJsonValue element : array) {
        if (!element.isString()) return false;
        out.append(element.toString());
    }
    return value.isArray();
}

template <typename Value>
bool readValue(const QJsonValue& value, std::optional<Value>& out) {
    if (value.isUndefined() || value.isNull()) return true;
    return readValue(value, out.emplace());
}

bool read(const QJsonObject& object, AutomatchGameRecord& out) {
    return readValue(object[idKey], out.id) && readValue(object[gameNumberKey], out.gameNumber) &&
           readValue(object[whiteEngineNameKey], out.whiteEngineName) &&
           readValue(object[blackEngineNameKey], out.blackEngineName) &&
           readValue(object[whiteIsEngine1Key], out.whiteIsEngine1) &&
           readValue(object[whiteEngineEloKey], out.whiteEngineElo) &&
           readValue(object[blackEngineEloKey], out.blackEngineElo) &&
           readValue(object[resultKey], out.result) &&
           readValue(object[winnerEngineNameKey], out.winnerEngineName) &&
           readValue(object[reasonKey], out.reason) && readValue(object[movesCountKey], out.movesCount) &&
           readValue(object[movesUCIKey], out.movesUCI) && readValue(object[pgnKey], out.pgn) &&
           readValue(object[timestampKey], out.timestamp);
}

template <typename Value>
void insertPresent(QJsonObject& object, QLatin1String key, const std::optional<Value>& value) {
    if (value) object.insert(key, *value);
}

}  // namespace

QString AutomatchGameRecord::resultBadgeText() const {
    if (result == QLatin1String("1-0")) return QStringLiteral("1 - 0");
    if (result == QLatin1String("0-1")) return QStringLiteral("0 - 1");
    return QStringLiteral("½ - ½");
}

QByteArray toJson(const AutomatchGameRecord& record) {
    QJsonObject object{{idKey, QString::fromStdString(record.id.text())},
                       {gameNumberKey, record.gameNumber},
                       {whiteEngineNameKey, record.whiteEngineName},
                       {blackEngineNameKey, record.blackEngineName},
                       {whiteIsEngine1Key, record.whiteIsEngine1},
                       {resultKey, record.result},
                       {reasonKey, record.reason},
                       {movesCountKey, record.movesCount},
                       {movesUCIKey, QJsonArray::fromStringList(record.movesUCI)},
                       {pgnKey, record.pgn},
                       {timestampKey, record.timestamp.toUTC().toString(Qt::ISODateWithMs)}};
    insertPresent(object, whiteEngineEloKey, record.whiteEngineElo);
    insertPresent(object, blackEngineEloKey, record.blackEngineElo);
    insertPresent(object, winnerEngineNameKey, record.winnerEngineName);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<AutomatchGameRecord> automatchGameRecordFromJson(const QByteArray& json) {
    const QJsonDocument document = QJsonDocument::fromJson(json);
    AutomatchGameRecord record;
    if (!document.isObject() || !read(document.object(), record)) return std::nullopt;
    return record;
}

}  // namespace orlix
