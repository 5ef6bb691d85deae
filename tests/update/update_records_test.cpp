// The records that an update leaves on the disk: the install plan, the result, and their places.
#include <gmock/gmock.h>

#include "support/environment_guard.h"
#include "update/update_info.h"
#include "update/update_install_plan.h"
#include "update/update_install_result.h"
#include "update/update_places.h"
#include "update/user_folders.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

namespace orlix {
namespace {

const UpdateInstallPlan plan{QStringLiteral("/c/a.dmg"),
                             QStringLiteral("/Applications/O.app"),
                             QStringLiteral("com.dovu.velmorandix"),
                             QStringLiteral("TEAM123456"),
                             QStringLiteral("1.2"),
                             QStringLiteral("42"),
                             QString(64, QLatin1Char('a')),
                             QStringLiteral("/s/last-install.json")};

const QStringList planKeys{QStringLiteral("dmgPath"),
                           QStringLiteral("targetAppPath"),
                           QStringLiteral("expectedBundleIdentifier"),
                           QStringLiteral("expectedTeamIdentifier"),
                           QStringLiteral("expectedVersion"),
                           QStringLiteral("expectedBuild"),
                           QStringLiteral("expectedSHA256"),
                           QStringLiteral("statusPath")};

QByteArray json(const QJsonObject& object) {
    return QJsonDocument(object).toJson();
}

QJsonObject planObject() {
    return QJsonDocument::fromJson(plan.toJson()).object();
}

TEST(UpdateInstallPlan, isWrittenUnderItsMembersNames) {
    const QJsonObject object = planObject();
    EXPECT_EQ(object.size(), planKeys.size());
    EXPECT_EQ(object.value(QStringLiteral("dmgPath")), plan.dmgPath);
    EXPECT_EQ(object.value(QStringLiteral("targetAppPath")), plan.targetAppPath);
    EXPECT_EQ(object.value(QStringLiteral("expectedBundleIdentifier")), plan.expectedBundleIdentifier);
    EXPECT_EQ(object.value(QStringLiteral("expectedTeamIdentifier")), plan.expectedTeamIdentifier);
    EXPECT_EQ(object.value(QStringLiteral("expectedVersion")), plan.expectedVersion);
    EXPECT_EQ(object.value(QStringLiteral("expectedBuild")), plan.expectedBuild);
    EXPECT_EQ(object.value(QStringLiteral("expectedSHA256")), plan.expectedSHA256);
    EXPECT_EQ(object.value(QStringLiteral("statusPath")), plan.statusPath);
}

TEST(UpdateInstallPlan, readsBackWhatWasWritten) {
    QString error;
    EXPECT_EQ(UpdateInstallPlan::fromJson(plan.toJson(), error), plan);
    EXPECT_EQ(error, QString());
}

TEST(UpdateInstallPlan, everyFieldHasToBeThereAsText) {
    for (const QString& key : planKeys) {
        SCOPED_TRACE(key.toStdString());
        QString error;
        QJsonObject without = planObject();
        without.remove(key);
        EXPECT_FALSE(UpdateInstallPlan::fromJson(json(without), error));
        EXPECT_EQ(error, QStringLiteral("The install plan has no \"") + key + QStringLiteral("\"."));
        for (const QJsonValue& value : {QJsonValue(7), QJsonValue(true), QJsonValue(QJsonValue::Null),
                                        QJsonValue(QJsonObject()), QJsonValue(QJsonArray{})}) {
            QJsonObject wrong = planObject();
            wrong.insert(key, value);
            EXPECT_FALSE(UpdateInstallPlan::fromJson(json(wrong), error));
            EXPECT_NE(error, QString());
        }
    }
}

TEST(UpdateInstallPlan, isNothingButOneObject) {
    for (const char* text : {"", " ", "null", "[]", "\"plan\"", "{", "{}", "{} {}", "\xff"}) {
        SCOPED_TRACE(text);
        QString error;
        EXPECT_FALSE(UpdateInstallPlan::fromJson(text, error));
        EXPECT_NE(error, QString());
    }
}

const UpdateInstallResult result{true, QStringLiteral("Installed “1.2”."), QStringLiteral("1.2")};

TEST(UpdateInstallResult, isWrittenUnderItsMembersNamesAndReadsBack) {
    const QJsonObject object = QJsonDocument::fromJson(result.toJson()).object();
    EXPECT_EQ(object, (QJsonObject{{QStringLiteral("succeeded"), true},
                                   {QStringLiteral("message"), result.message},
                                   {QStringLiteral("version"), result.version}}));
    EXPECT_EQ(UpdateInstallResult::fromJson(result.toJson()), result);
}

TEST(UpdateInstallResult, allThreeKeysAreRequired) {
    const QJsonObject object = QJsonDocument::fromJson(result.toJson()).object();
    for (const QString& key : object.keys()) {
        SCOPED_TRACE(key.toStdString());
        QJsonObject without = object;
        without.remove(key);
        EXPECT_FALSE(UpdateInstallResult::fromJson(json(without)));
        QJsonObject null = object;
        null.insert(key, QJsonValue::Null);
        EXPECT_FALSE(UpdateInstallResult::fromJson(json(null)));
        QJsonObject wrong = object;
        wrong.insert(key, 1);
        EXPECT_FALSE(UpdateInstallResult::fromJson(json(wrong)));
    }
    QJsonObject more = object;
    more.insert(QStringLiteral("more"), 1);
    EXPECT_EQ(UpdateInstallResult::fromJson(json(more)), result) << "unknown keys do not matter";
}

TEST(UpdateInstallResult, whatIsNoObjectIsNoResult) {
    for (const char* text : {"", "nonsense", "[]", "true", "{\"succeeded\":true"}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(UpdateInstallResult::fromJson(text));
    }
}

UpdateInfo release(const QString& version, const std::optional<QString>& build) {
    UpdateInfo info;
    info.version = version;
    info.build = build;
    return info;
}

TEST(UpdatePlaces, namesCarryVersionAndBuild) {
    const QString caches = QStringLiteral("/caches");
    const UpdateInfo info = release(QStringLiteral("1.2"), QStringLiteral("42"));
    EXPECT_EQ(updateDirectory(caches, info), QStringLiteral("/caches/com.dovu.velmorandix/Updates/1.2-42"));
    EXPECT_EQ(imageFileName(info), QStringLiteral("Velmorandix-Orlix-1.2-42.dmg"));
    const UpdateInfo withoutBuild = release(QStringLiteral("1.2"), std::nullopt);
    EXPECT_EQ(updateDirectory(caches, withoutBuild),
              QStringLiteral("/caches/com.dovu.velmorandix/Updates/1.2-0"));
    EXPECT_EQ(imageFileName(withoutBuild), QStringLiteral("Velmorandix-Orlix-1.2-0.dmg"));
}

TEST(UpdatePlaces, aVersionNeverLeavesTheFolderOfUpdates) {
    const UpdateInfo info = release(QStringLiteral("../../x"), QString(QChar::Null));
    EXPECT_EQ(updateDirectory(QStringLiteral("/c"), info),
              QStringLiteral("/c/com.dovu.velmorandix/Updates/.._.._x-_"));
    EXPECT_EQ(imageFileName(info), QStringLiteral("Velmorandix-Orlix-.._.._x-_.dmg"));
}

TEST(UpdatePlaces, fixedNames) {
    EXPECT_EQ(helperFileName(), QStringLiteral("VelmorandixOrlixUpdater"));
    EXPECT_EQ(planFileName(), QStringLiteral("install-plan.json"));
    EXPECT_EQ(helperInBundle(), QStringLiteral("Contents/Helpers/VelmorandixOrlixUpdater"));
    EXPECT_EQ(installStatusPath(QStringLiteral("/support")),
              QStringLiteral("/support/com.dovu.velmorandix/Updates/last-install.json"));
    EXPECT_EQ(defaultBundleIdentifier(), QStringLiteral("com.dovu.velmorandix"));
}

#if !defined(__APPLE__)
TEST(UserFolders, areThoseThatTheUserChose) {
    EnvironmentGuard environment;
    environment.set("HOME", "/home/somebody");
    environment.unset("XDG_CACHE_HOME");
    environment.unset("XDG_DATA_HOME");
    EXPECT_EQ(userFolders().caches, QStringLiteral("/home/somebody/.cache"));
    EXPECT_EQ(userFolders().applicationSupport, QStringLiteral("/home/somebody/.local/share"));
    environment.set("XDG_CACHE_HOME", "/else/where");
    environment.set("XDG_DATA_HOME", "/data");
    EXPECT_EQ(userFolders().caches, QStringLiteral("/else/where"));
    EXPECT_EQ(userFolders().applicationSupport, QStringLiteral("/data"));
}
#endif

}  // namespace
}  // namespace orlix
