#include "engine/engine_configuration.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <limits>

namespace orlix {
namespace {

EngineConfiguration sample() {
    EngineConfiguration engine;
    engine.id = *Uuid::fromText("12345678-9ABC-DEF0-1234-56789ABCDEF0");
    engine.name = QStringLiteral("Größe ♞ \"quoted\"");
    engine.executablePath = QStringLiteral("/opt/my engines/eng");
    engine.author = QStringLiteral("Someone");
    engine.skillLevel = 7;
    engine.threads = std::numeric_limits<qint64>::max();
    engine.hashMB = std::numeric_limits<qint64>::min();
    engine.limitElo = true;
    engine.elo = 1500;
    return engine;
}

QJsonObject storedSample() {
    return QJsonDocument::fromJson(toJson({sample()})).array().first().toObject();
}

std::optional<QList<EngineConfiguration>> read(const QJsonObject& record) {
    return engineConfigurationsFromJson(QJsonDocument(QJsonArray{record}).toJson());
}

TEST(EngineConfiguration, newRecordsHaveTheDefaultsAndAnIdentityOfTheirOwn) {
    const EngineConfiguration engine;
    EXPECT_EQ(engine.skillLevel, 20);
    EXPECT_EQ(engine.threads, 2);
    EXPECT_EQ(engine.hashMB, 64);
    EXPECT_FALSE(engine.limitElo);
    EXPECT_EQ(engine.elo, 2000);
    EXPECT_FALSE(engine.isBuiltIn);
    EXPECT_NE(engine.id, EngineConfiguration().id);
}

TEST(EngineConfiguration, builtInEntryIsTheSameEverywhere) {
    const EngineConfiguration& mini = EngineConfiguration::builtInMini();
    EXPECT_EQ(mini.id.text(), "00000000-0000-0000-0000-000000000001");
    EXPECT_EQ(mini.name, QStringLiteral("Velmorandix Mini (Built-in)"));
    EXPECT_EQ(mini.executablePath, QString());
    EXPECT_EQ(mini.author, QStringLiteral("Velmorandix Orlix"));
    EXPECT_EQ(mini.skillLevel, 10);
    EXPECT_EQ(mini.threads, 1);
    EXPECT_EQ(mini.hashMB, 16);
    EXPECT_FALSE(mini.limitElo);
    EXPECT_EQ(mini.elo, 2000);
    EXPECT_TRUE(mini.isBuiltIn);
}

TEST(EngineConfiguration, storesTenKeysAndReadsThemBack) {
    EXPECT_EQ(storedSample().keys(),
              QStringList({QStringLiteral("author"), QStringLiteral("elo"), QStringLiteral("executablePath"),
                           QStringLiteral("hashMB"), QStringLiteral("id"), QStringLiteral("isBuiltIn"),
                           QStringLiteral("limitElo"), QStringLiteral("name"), QStringLiteral("skillLevel"),
                           QStringLiteral("threads")}));
    EXPECT_EQ(storedSample()[QLatin1String("id")].toString(),
              QStringLiteral("12345678-9ABC-DEF0-1234-56789ABCDEF0"));
    const QList<EngineConfiguration> both{sample(), EngineConfiguration::builtInMini()};
    EXPECT_EQ(engineConfigurationsFromJson(toJson(both)), both);
    EXPECT_EQ(engineConfigurationsFromJson(toJson({})), QList<EngineConfiguration>());
}

TEST(EngineConfiguration, aRecordThatLacksAnyKeyFailsTheWholeList) {
    ASSERT_EQ(read(storedSample()), QList<EngineConfiguration>{sample()});
    const QStringList keys = storedSample().keys();
    for (const QString& key : keys) {
        QJsonObject record = storedSample();
        record.remove(key);
        EXPECT_EQ(read(record), std::nullopt) << key.toStdString();
        const QByteArray list = QJsonDocument(QJsonArray{storedSample(), record}).toJson();
        EXPECT_EQ(engineConfigurationsFromJson(list), std::nullopt) << key.toStdString();
    }
}

TEST(EngineConfiguration, aValueOfAnotherTypeFailsTheRecord) {
    const QStringList keys = storedSample().keys();
    for (const QString& key : keys) {
        const QJsonValue own = storedSample()[key];
        for (const QJsonValue& wrong :
             {QJsonValue(QJsonValue::Null), QJsonValue(true), QJsonValue(1), QJsonValue(QStringLiteral("1")),
              QJsonValue(QJsonArray{1}), QJsonValue(QJsonObject{})}) {
            if (wrong.type() == own.type() && key != QStringLiteral("id")) continue;
            QJsonObject record = storedSample();
            record[key] = wrong;
            EXPECT_EQ(read(record), std::nullopt) << key.toStdString();
        }
    }
}

TEST(EngineConfiguration, readsWholeNumbersThatFitAndNoOthers) {
    const struct {
        const char* text;
        std::optional<qint64> value;
    } cases[] = {
        {"0", 0},
        {"-5", -5},
        {"20.0", 20},
        {"2e3", 2000},
        {"9223372036854775807", std::numeric_limits<qint64>::max()},
        {"-9223372036854775808", std::numeric_limits<qint64>::min()},
        {"9223372036854775808", std::nullopt},
        {"-9223372036854777856", std::nullopt},
        {"1e300", std::nullopt},
        {"0.5", std::nullopt},
        {"1.0000001", std::nullopt},
    };
    for (const auto& [text, value] : cases) {
        QByteArray json = toJson({sample()});
        json.replace("\"elo\":1500", QByteArray("\"elo\":") + text);
        const auto engines = engineConfigurationsFromJson(json);
        ASSERT_EQ(engines.has_value(), value.has_value()) << text;
        if (engines) {
            EXPECT_EQ(engines->first().elo, *value) << text;
        }
    }
}

TEST(EngineConfiguration, readsTheIdentityInEitherCaseButNothingElse) {
    QJsonObject record = storedSample();
    record[QLatin1String("id")] = QStringLiteral("12345678-9abc-def0-1234-56789abcdef0");
    EXPECT_EQ(read(record), QList<EngineConfiguration>{sample()});
    for (const char* wrong :
         {"", "{12345678-9ABC-DEF0-1234-56789ABCDEF0}", "123456789ABCDEF0123456789ABCDEF0",
          "12345678-9ABC-DEF0-1234-56789ABCDEFG", "12345678-9ABC-DEF0-1234-56789ABCDEF0 "}) {
        record[QLatin1String("id")] = QString::fromLatin1(wrong);
        EXPECT_EQ(read(record), std::nullopt) << wrong;
    }
}

TEST(EngineConfiguration, ignoresKeysThatItDoesNotKnow) {
    QJsonObject record = storedSample();
    record[QLatin1String("later")] = 1;
    EXPECT_EQ(read(record), QList<EngineConfiguration>{sample()});
}

TEST(EngineConfiguration, dataThatIsNoListOfRecordsFails) {
    for (const char* json : {"", "{}", "null", "[null]", "[[]]", "[1]", "[", "[] x", "not json"})
        EXPECT_EQ(engineConfigurationsFromJson(json), std::nullopt) << json;
}

TEST(EngineConfiguration, isEqualAndHashedFieldByField) {
    QList<EngineConfiguration> variants(11, sample());
    variants[1].id = Uuid::random();
    variants[2].name += u'x';
    variants[3].executablePath += u'x';
    variants[4].author += u'x';
    variants[5].skillLevel = 1;
    variants[6].threads = 1;
    variants[7].hashMB = 1;
    variants[8].limitElo = false;
    variants[9].elo = 1;
    variants[10].isBuiltIn = true;
    const QSet<EngineConfiguration> set(variants.cbegin(), variants.cend());
    EXPECT_EQ(set.size(), variants.size());
    EXPECT_TRUE(set.contains(sample()));
}

}  // namespace
}  // namespace orlix
