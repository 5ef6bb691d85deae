#include "platform/linux/linux_defaults_store.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "support/environment_guard.h"

namespace orlix {
namespace {

const QString key = QStringLiteral("velmorandix_orlix_update_check_at_launch");

struct LinuxDefaultsStoreTest : ::testing::Test {
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("velmorandix-orlix/defaults.ini"));

    void writeByHand(const QByteArray& contents) {
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }
    QByteArray contents() const {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

TEST_F(LinuxDefaultsStoreTest, emptyStoreHasNoValuesAndMakesNoFile) {
    const LinuxDefaultsStore store(path);
    EXPECT_EQ(store.data(key), std::nullopt);
    EXPECT_EQ(store.string(key), std::nullopt);
    EXPECT_EQ(store.boolean(key), std::nullopt);
    EXPECT_FALSE(QFile::exists(path));
}

TEST_F(LinuxDefaultsStoreTest, everySetIsOnTheDiskAtOnce) {
    LinuxDefaultsStore store(path);
    store.setString(QStringLiteral("VelmorandixLanguage"), QStringLiteral("de"));
    EXPECT_TRUE(contents().contains("VelmorandixLanguage=de")) << contents().constData();
    store.setBoolean(key, false);
    EXPECT_TRUE(contents().contains("velmorandix_orlix_update_check_at_launch=false"));
    EXPECT_TRUE(contents().contains("VelmorandixLanguage=de")) << "the key written before is kept";
}

TEST_F(LinuxDefaultsStoreTest, booleansComeBackAsBooleansOnly) {
    for (const bool value : {true, false}) {
        LinuxDefaultsStore store(path);
        store.setBoolean(key, value);
        const LinuxDefaultsStore restarted(path);
        for (const DefaultsStore* reader :
             {static_cast<const DefaultsStore*>(&store), static_cast<const DefaultsStore*>(&restarted)}) {
            EXPECT_EQ(reader->boolean(key), value);
            EXPECT_EQ(reader->string(key), std::nullopt);
            EXPECT_EQ(reader->data(key), std::nullopt);
        }
    }
}

TEST_F(LinuxDefaultsStoreTest, stringsComeBackAsStringsOnly) {
    const QString values[] = {QStringLiteral("de"),       QString(),
                              QStringLiteral("a b = c"),  QStringLiteral("one, two; three"),
                              QStringLiteral("Français"), QStringLiteral("@ByteArray(x)"),
                              QStringLiteral(" edge "),   QStringLiteral("line\nbreak\\"),
                              QStringLiteral("棋"),       QStringLiteral("%20"),
                              QStringLiteral("true"),     QStringLiteral("No"),
                              QStringLiteral("1"),        QStringLiteral("\"true\""),
                              QStringLiteral("\""),       QStringLiteral("\"\"")};
    for (const QString& value : values) {
        LinuxDefaultsStore store(path);
        store.setString(key, value);
        const LinuxDefaultsStore restarted(path);
        for (const DefaultsStore* reader :
             {static_cast<const DefaultsStore*>(&store), static_cast<const DefaultsStore*>(&restarted)}) {
            EXPECT_EQ(reader->string(key), value) << value.toStdString();
            EXPECT_EQ(reader->boolean(key), std::nullopt) << value.toStdString();
            EXPECT_EQ(reader->data(key), std::nullopt) << value.toStdString();
        }
    }
}

TEST_F(LinuxDefaultsStoreTest, dataComesBackByteForByteAndAsDataOnly) {
    QByteArray everyByte;
    for (int byte = 0; byte < 256; ++byte)
        everyByte.append(static_cast<char>(byte));
    const QByteArray values[] = {QByteArrayLiteral("[{\"name\":\"Stockfish, \\\"16\\\"\"}]"),
                                 QByteArray(""),
                                 everyByte,
                                 QByteArrayLiteral("true"),
                                 QByteArray(300'000, 'x'),
                                 QStringLiteral("é棋\n;%@").toUtf8()};
    for (const QByteArray& value : values) {
        LinuxDefaultsStore store(path);
        store.setData(key, value);
        const LinuxDefaultsStore restarted(path);
        for (const DefaultsStore* reader :
             {static_cast<const DefaultsStore*>(&store), static_cast<const DefaultsStore*>(&restarted)}) {
            EXPECT_EQ(reader->data(key), value);
            EXPECT_EQ(reader->string(key), std::nullopt);
            EXPECT_EQ(reader->boolean(key), std::nullopt);
        }
    }
}

TEST_F(LinuxDefaultsStoreTest, laterValueReplacesOneOfAnotherType) {
    LinuxDefaultsStore store(path);
    store.setData(key, QByteArrayLiteral("x"));
    store.setString(key, QStringLiteral("y"));
    EXPECT_EQ(store.data(key), std::nullopt);
    EXPECT_EQ(store.string(key), QStringLiteral("y"));
}

TEST_F(LinuxDefaultsStoreTest, userMayEditBooleansByHand) {
    struct Row {
        const char* text;
        std::optional<bool> expected;
    };
    const Row rows[] = {
        {"false", false}, {"true", true}, {"False", false}, {"TRUE", true},     {"no", false},
        {"yes", true},    {"0", false},   {"1", true},      {" false ", false}, {"maybe", {}},
        {"", {}},         {"2", {}},      {"a, b", {}},     {"off", {}},        {"@ByteArray(true)", {}}};
    for (const Row& row : rows) {
        for (const QByteArray& header : {QByteArrayLiteral("[General]\n"), QByteArray()}) {
            writeByHand(header + "velmorandix_orlix_update_check_at_launch=" + row.text + "\n");
            EXPECT_EQ(LinuxDefaultsStore(path).boolean(key), row.expected) << row.text;
        }
    }
}

TEST_F(LinuxDefaultsStoreTest, damagedFileIsNoError) {
    writeByHand("[Gener\n=\n===\n\xff\xfe\0garbage");
    LinuxDefaultsStore store(path);
    EXPECT_EQ(store.string(key), std::nullopt);
    store.setString(key, QStringLiteral("fr"));
    EXPECT_EQ(LinuxDefaultsStore(path).string(key), QStringLiteral("fr"));
}

TEST_F(LinuxDefaultsStoreTest, otherKeysInTheFileAreKept) {
    writeByHand("[General]\nsomething_else=kept\n\n[Group]\nvalue=7\n");
    LinuxDefaultsStore(path).setBoolean(key, true);
    EXPECT_TRUE(contents().contains("something_else=kept"));
    EXPECT_TRUE(contents().contains("value=7"));
}

TEST_F(LinuxDefaultsStoreTest, twoProgramsAtOnceKeepEachOthersKeys) {
    LinuxDefaultsStore first(path);
    LinuxDefaultsStore second(path);
    first.setString(QStringLiteral("VelmorandixLanguage"), QStringLiteral("nl"));
    second.setBoolean(key, true);
    const LinuxDefaultsStore restarted(path);
    EXPECT_EQ(restarted.string(QStringLiteral("VelmorandixLanguage")), QStringLiteral("nl"));
    EXPECT_EQ(restarted.boolean(key), true);
}

TEST_F(LinuxDefaultsStoreTest, storeThatCannotBeWrittenStillHoldsTheValue) {
    // A file in the place of the folder refuses also the superuser.
    QFile obstacle(folder.filePath(QStringLiteral("velmorandix-orlix")));
    ASSERT_TRUE(obstacle.open(QIODevice::WriteOnly));
    LinuxDefaultsStore store(path);
    store.setString(key, QStringLiteral("de"));
    EXPECT_EQ(store.string(key), QStringLiteral("de"));
}

TEST_F(LinuxDefaultsStoreTest, pathFollowsTheConfigurationFolder) {
    EnvironmentGuard environment;
    environment.set("HOME", folder.path().toLocal8Bit());
    environment.set("XDG_CONFIG_HOME", "/somewhere/else");
    EXPECT_EQ(LinuxDefaultsStore::defaultPath(),
              QStringLiteral("/somewhere/else/velmorandix-orlix/defaults.ini"));
    const QString inHome = folder.path() + QStringLiteral("/.config/velmorandix-orlix/defaults.ini");
    environment.unset("XDG_CONFIG_HOME");
    EXPECT_EQ(LinuxDefaultsStore::defaultPath(), inHome);
    environment.set("XDG_CONFIG_HOME", "relative/path");
    EXPECT_EQ(LinuxDefaultsStore::defaultPath(), inHome);
}

}  // namespace
}  // namespace orlix
