#include "automatch/automatch_game_record.h"

#include <gmock/gmock.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

namespace orlix {
namespace {

AutomatchGameRecord decidedGame() {
    AutomatchGameRecord record;
    record.gameNumber = 7;
    record.whiteEngineName = QStringLiteral("Weiß \"1\"");
    record.blackEngineName = QStringLiteral("Beta");
    record.whiteIsEngine1 = false;
    record.whiteEngineElo = 1850;
    record.blackEngineElo = 2100;
    record.result = QStringLiteral("0-1");
    record.winnerEngineName = QStringLiteral("Beta");
    record.reason = QStringLiteral("Schachmatt (Schwarz gewinnt)");
    record.movesCount = 2;
    record.movesUCI = {QStringLiteral("e2e4"), QStringLiteral("e7e8q")};
    record.pgn = QStringLiteral("[Event \"x\"]\n\n1. e4 e5 0-1\n");
    record.timestamp = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123, Qt::UTC);
    return record;
}

AutomatchGameRecord drawnGame() {
    AutomatchGameRecord record = decidedGame();
    record.whiteEngineElo.reset();
    record.blackEngineElo.reset();
    record.winnerEngineName.reset();
    record.result = QStringLiteral("1/2-1/2");
    record.movesUCI.clear();
    record.movesCount = 0;
    return record;
}

QJsonObject objectOf(const AutomatchGameRecord& record) {
    return QJsonDocument::fromJson(toJson(record)).object();
}

QByteArray textOf(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

TEST(AutomatchGameRecord, everyRecordHasAnIdentityOfItsOwn) {
    EXPECT_NE(AutomatchGameRecord().id, AutomatchGameRecord().id);
}

TEST(AutomatchGameRecord, equalityComparesEveryField) {
    const AutomatchGameRecord record = decidedGame();
    EXPECT_EQ(record, AutomatchGameRecord(record));
    const std::vector<std::function<void(AutomatchGameRecord&)>> changes{
        [](auto& r) { r.id = Uuid::random(); },
        [](auto& r) { ++r.gameNumber; },
        [](auto& r) { r.whiteEngineName += u'x'; },
        [](auto& r) { r.blackEngineName += u'x'; },
        [](auto& r) { r.whiteIsEngine1 = true; },
        [](auto& r) { r.whiteEngineElo.reset(); },
        [](auto& r) { r.blackEngineElo = 1; },
        [](auto& r) { r.result = QStringLiteral("1-0"); },
        [](auto& r) { r.winnerEngineName.reset(); },
        [](auto& r) { r.reason.clear(); },
        [](auto& r) { ++r.movesCount; },
        [](auto& r) { r.movesUCI.append(QStringLiteral("a2a3")); },
        [](auto& r) { r.pgn += u'x'; },
        [](auto& r) { r.timestamp = r.timestamp.addMSecs(1); },
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        AutomatchGameRecord changed = record;
        changes[i](changed);
        EXPECT_NE(record, changed) << "change " << i;
    }
}

TEST(AutomatchGameRecord, theBadgeShowsTheResultWithSpaces) {
    AutomatchGameRecord record;
    record.result = QStringLiteral("1-0");
    EXPECT_EQ(record.resultBadgeText(), QStringLiteral("1 - 0"));
    record.result = QStringLiteral("0-1");
    EXPECT_EQ(record.resultBadgeText(), QStringLiteral("0 - 1"));
    for (const char* other : {"1/2-1/2", "*", "", "1 - 0"}) {
        record.result = QString::fromLatin1(other);
        EXPECT_EQ(record.resultBadgeText(), QStringLiteral("½ - ½")) << other;
    }
}

TEST(AutomatchGameRecord, jsonHasTheFieldNamesAsKeys) {
    const AutomatchGameRecord record = decidedGame();
    const QJsonObject expected{
        {QStringLiteral("id"), QString::fromStdString(record.id.text())},
        {QStringLiteral("gameNumber"), 7},
        {QStringLiteral("whiteEngineName"), QStringLiteral("Weiß \"1\"")},
        {QStringLiteral("blackEngineName"), QStringLiteral("Beta")},
        {QStringLiteral("whiteIsEngine1"), false},
        {QStringLiteral("whiteEngineElo"), 1850},
        {QStringLiteral("blackEngineElo"), 2100},
        {QStringLiteral("result"), QStringLiteral("0-1")},
        {QStringLiteral("winnerEngineName"), QStringLiteral("Beta")},
        {QStringLiteral("reason"), QStringLiteral("Schachmatt (Schwarz gewinnt)")},
        {QStringLiteral("movesCount"), 2},
        {QStringLiteral("movesUCI"), QJsonArray{QStringLiteral("e2e4"), QStringLiteral("e7e8q")}},
        {QStringLiteral("pgn"), QStringLiteral("[Event \"x\"]\n\n1. e4 e5 0-1\n")},
        {QStringLiteral("timestamp"), QStringLiteral("2023-11-14T22:13:20.123Z")},
    };
    EXPECT_EQ(objectOf(record), expected);
}

TEST(AutomatchGameRecord, absentFieldsAreLeftOutOfTheJson) {
    const QJsonObject object = objectOf(drawnGame());
    EXPECT_EQ(object.size(), 11);
    for (const char* key : {"whiteEngineElo", "blackEngineElo", "winnerEngineName"})
        EXPECT_FALSE(object.contains(QLatin1String(key))) << key;
}

TEST(AutomatchGameRecord, jsonReadsBackEqual) {
    for (const AutomatchGameRecord& record : {decidedGame(), drawnGame()})
        EXPECT_EQ(automatchGameRecordFromJson(toJson(record)), record);
}

TEST(AutomatchGameRecord, aMomentInAnyZoneReadsBackAsTheSameMoment) {
    AutomatchGameRecord record = decidedGame();
    record.timestamp = record.timestamp.toOffsetFromUtc(7200);
    EXPECT_EQ(automatchGameRecordFromJson(toJson(record)), record);
}

TEST(AutomatchGameRecord, nullCountsAsAbsentForTheOptionalFields) {
    QJsonObject object = objectOf(drawnGame());
    const AutomatchGameRecord record = *automatchGameRecordFromJson(textOf(object));
    for (const char* key : {"whiteEngineElo", "blackEngineElo", "winnerEngineName"})
        object.insert(QLatin1String(key), QJsonValue::Null);
    EXPECT_EQ(automatchGameRecordFromJson(textOf(object)), record);
}

TEST(AutomatchGameRecord, jsonThatLacksARequiredKeyIsNoRecord) {
    for (const char* key : {"id", "gameNumber", "whiteEngineName", "blackEngineName", "whiteIsEngine1",
                            "result", "reason", "movesCount", "movesUCI", "pgn", "timestamp"}) {
        QJsonObject object = objectOf(decidedGame());
        object.remove(QLatin1String(key));
        EXPECT_EQ(automatchGameRecordFromJson(textOf(object)), std::nullopt) << key;
    }
}

TEST(AutomatchGameRecord, jsonWithAValueOfAnotherTypeIsNoRecord) {
    const QList<std::pair<const char*, QJsonValue>> wrong{
        {"id", 5},
        {"id", QStringLiteral("no identity")},
        {"gameNumber", 1.5},
        {"gameNumber", QStringLiteral("1")},
        {"whiteEngineName", 1},
        {"blackEngineName", QJsonValue::Null},
        {"whiteIsEngine1", 1},
        {"whiteEngineElo", QStringLiteral("1800")},
        {"blackEngineElo", 1e300},
        {"result", false},
        {"winnerEngineName", 3},
        {"reason", QJsonArray{}},
        {"movesCount", false},
        {"movesUCI", QStringLiteral("e2e4")},
        {"movesUCI", QJsonArray{QStringLiteral("e2e4"), 3}},
        {"pgn", QJsonObject{}},
        {"timestamp", QStringLiteral("yesterday")},
        {"timestamp", 1},
    };
    for (const auto& [key, value] : wrong) {
        QJsonObject object = objectOf(decidedGame());
        object.insert(QLatin1String(key), value);
        EXPECT_EQ(automatchGameRecordFromJson(textOf(object)), std::nullopt) << textOf(object).toStdString();
    }
    for (const char* text : {"", "[]", "null", "{", "5"})
        EXPECT_EQ(automatchGameRecordFromJson(text), std::nullopt) << text;
}

}  // namespace
}  // namespace orlix
