#include "update/update_info.h"

#include <gmock/gmock.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <vector>

namespace orlix {
namespace {

QJsonObject fullFeed() {
    return {{QStringLiteral("version"), QStringLiteral("1.10")},
            {QStringLiteral("build"), QStringLiteral("42")},
            {QStringLiteral("size"), qint64{9007199254740993}},
            {QStringLiteral("sha256"), QString(64, QLatin1Char('A'))},
            {QStringLiteral("download_url"), QStringLiteral("https://updates.example/orlix.dmg")},
            {QStringLiteral("release_notes"), QStringLiteral("Better “play”.\nMore.")},
            {QStringLiteral("published_at"), QStringLiteral("yesterday")},
            {QStringLiteral("minimum_macos"), QStringLiteral("13.0")}};
}

QByteArray json(const QJsonObject& object) {
    return QJsonDocument(object).toJson();
}

QString errorOf(const QByteArray& feed) {
    QString error;
    const bool isRead = UpdateInfo::fromJson(feed, error).has_value();
    EXPECT_EQ(isRead, error.isEmpty());
    return error;
}

UpdateInfo read(const QByteArray& feed) {
    QString error;
    return UpdateInfo::fromJson(feed, error).value_or(UpdateInfo{});
}

TEST(UpdateInfo, readsEveryField) {
    UpdateInfo expected;
    expected.version = QStringLiteral("1.10");
    expected.build = QStringLiteral("42");
    expected.downloadURL = QUrl(QStringLiteral("https://updates.example/orlix.dmg"));
    expected.releaseNotes = QStringLiteral("Better “play”.\nMore.");
    expected.publishedAt = QStringLiteral("yesterday");
    expected.size = 9007199254740993;
    expected.sha256 = QString(64, QLatin1Char('A'));
    expected.minimumMacOS = QStringLiteral("13.0");
    EXPECT_EQ(errorOf(json(fullFeed())), QString());
    EXPECT_EQ(read(json(fullFeed())), expected);
}

TEST(UpdateInfo, writesTheSameKeysAndLeavesOutWhatIsAbsent) {
    EXPECT_EQ(QJsonDocument::fromJson(read(json(fullFeed())).toJson()).object(), fullFeed());
    UpdateInfo least;
    least.version = QStringLiteral("2");
    least.downloadURL = QUrl(QStringLiteral("https://updates.example/ä.dmg"));
    EXPECT_EQ(QJsonDocument::fromJson(least.toJson()).object().keys(),
              (QStringList{QStringLiteral("download_url"), QStringLiteral("version")}));
    EXPECT_EQ(read(least.toJson()), least);
}

TEST(UpdateInfo, onlyVersionAndAddressAreRequired) {
    for (const QString& key : fullFeed().keys()) {
        SCOPED_TRACE(key.toStdString());
        QJsonObject without = fullFeed();
        without.remove(key);
        QJsonObject null = fullFeed();
        null.insert(key, QJsonValue::Null);
        const bool isRequired = key == QLatin1String("version") || key == QLatin1String("download_url");
        const QString expected =
            isRequired ? QStringLiteral("The update feed has no \"") + key + QStringLiteral("\".")
                       : QString();
        EXPECT_EQ(errorOf(json(without)), expected);
        EXPECT_EQ(errorOf(json(null)), expected);
    }
}

TEST(UpdateInfo, aValueOfAnotherTypeFails) {
    for (const QString& key : fullFeed().keys()) {
        for (const QJsonValue& value : {QJsonValue(true), QJsonValue(1.5), QJsonValue(QJsonObject()),
                                        QJsonValue(QJsonArray()), QJsonValue(QStringLiteral("x"))}) {
            const bool isText = key != QLatin1String("size");
            if (value.isString() == isText) continue;
            SCOPED_TRACE(key.toStdString());
            QJsonObject wrong = fullFeed();
            wrong.insert(key, value);
            EXPECT_EQ(errorOf(json(wrong)),
                      QStringLiteral("The update feed has a value of the wrong type under \"") + key +
                          QStringLiteral("\"."));
        }
    }
}

QByteArray withSize(const char* size) {
    return QByteArray("{\"version\":\"1\",\"download_url\":\"https://a/b\",\"size\":") + size + "}";
}

TEST(UpdateInfo, aSizeIsAWholeNumberOf64Bits) {
    EXPECT_EQ(read(withSize("1000")).size, 1000);
    EXPECT_EQ(read(withSize("-5")).size, -5);
    EXPECT_EQ(read(withSize("5.0")).size, 5);
    EXPECT_EQ(read(withSize("1e3")).size, 1000);
    EXPECT_EQ(read(withSize("0")).size, 0);
    EXPECT_EQ(read(withSize("1")).size, 1);
    EXPECT_EQ(read(withSize("9223372036854775807")).size, 9223372036854775807LL);
    for (const char* bad : {"9223372036854775808", "1e30", "0.5", "\"1000\"", "true", "[]"}) {
        SCOPED_TRACE(bad);
        EXPECT_NE(errorOf(withSize(bad)), QString());
    }
}

TEST(UpdateInfo, unknownKeysDoNotMatter) {
    QJsonObject more = fullFeed();
    more.insert(QStringLiteral("downloadURL"), 7);
    more.insert(QStringLiteral("Version"), QJsonArray());
    EXPECT_EQ(read(json(more)), read(json(fullFeed())));
    QJsonObject camel = fullFeed();
    camel.remove(QStringLiteral("download_url"));
    camel.insert(QStringLiteral("downloadUrl"), QStringLiteral("https://a/b"));
    EXPECT_NE(errorOf(json(camel)), QString()) << "keys are not converted";
}

TEST(UpdateInfo, whatIsNoJsonObjectFails) {
    for (const char* feed : {"", " ", "null", "42", "\"text\"", "[]", "[{}]", "{", "{}", "{\"version\"}",
                             "<html><body>Please log in</body></html>", "{\"version\":\"1\"} x", "\xff\xfe{}",
                             "{'version':'1'}", "{\"version\":\"1\",}", "\x1f\x8b\x08"}) {
        SCOPED_TRACE(feed);
        EXPECT_NE(errorOf(feed), QString());
    }
    EXPECT_NE(errorOf(QByteArray(100'000, '[')), QString()) << "nor something that nests deeply";
    for (const char* other : {"[]", "[{\"version\":\"1\",\"download_url\":\"https://a/b\"}]"})
        EXPECT_EQ(errorOf(other), QStringLiteral("The update feed is not a JSON object."));
}

TEST(UpdateInfo, anAddressHasToParse) {
    for (const char* address : {"", "https://a b/c", "https://a:99999/c", "https://[::1/c", "https://a/%zz",
                                "https://a\\@b/c", "https://a/\"x\""}) {
        SCOPED_TRACE(address);
        QJsonObject wrong = fullFeed();
        wrong.insert(QStringLiteral("download_url"), QString::fromUtf8(address));
        EXPECT_EQ(errorOf(json(wrong)),
                  QStringLiteral("The update feed has no valid URL under \"download_url\"."));
    }
}

struct Fitness {
    const char* name;
    void (*change)(UpdateInfo& info);
    bool isFit;
};

TEST(UpdateInfo, isInstalledOnlyWithBuildSizeAndDigest) {
    const std::vector<Fitness> cases{
        {"complete", [](UpdateInfo&) {}, true},
        {"no build", [](UpdateInfo& info) { info.build.reset(); }, false},
        {"an empty build", [](UpdateInfo& info) { info.build = QString(); }, false},
        {"no size", [](UpdateInfo& info) { info.size.reset(); }, false},
        {"size 0", [](UpdateInfo& info) { info.size = 0; }, false},
        {"a negative size", [](UpdateInfo& info) { info.size = -1; }, false},
        {"size 1", [](UpdateInfo& info) { info.size = 1; }, true},
        {"no digest", [](UpdateInfo& info) { info.sha256.reset(); }, false},
        {"63 digits", [](UpdateInfo& info) { info.sha256 = QString(63, QLatin1Char('a')); }, false},
        {"65 digits", [](UpdateInfo& info) { info.sha256 = QString(65, QLatin1Char('a')); }, false},
        {"the letter g", [](UpdateInfo& info) { info.sha256->replace(40, 1, QLatin1Char('g')); }, false},
        {"a capital G", [](UpdateInfo& info) { info.sha256->replace(0, 1, QLatin1Char('G')); }, false},
        {"a wide digit", [](UpdateInfo& info) { info.sha256->replace(63, 1, QChar(0xff11)); }, false},
        {"a slash", [](UpdateInfo& info) { info.sha256->replace(5, 1, QLatin1Char('/')); }, false},
        {"a colon", [](UpdateInfo& info) { info.sha256->replace(5, 1, QLatin1Char(':')); }, false},
        {"all digits",
         [](UpdateInfo& info) {
             info.sha256 = QStringLiteral("0123456789abcdefABCDEF0123456789abcdefABCDEF0123456789abcdefABCD");
         },
         true},
    };
    for (const Fitness& fitness : cases) {
        SCOPED_TRACE(fitness.name);
        UpdateInfo info = read(json(fullFeed()));
        fitness.change(info);
        EXPECT_EQ(info.supportsAutomaticInstallation(), fitness.isFit);
    }
}

}  // namespace
}  // namespace orlix
