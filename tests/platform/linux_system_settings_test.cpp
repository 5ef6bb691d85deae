#include "platform/linux/linux_system_settings.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "support/environment_guard.h"

namespace orlix {
namespace {

struct LinuxSystemSettingsTest : ::testing::Test {
    QTemporaryDir config;
    EnvironmentGuard environment;

    LinuxSystemSettingsTest() {
        for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"})
            environment.unset(name);
        environment.set("XDG_CONFIG_HOME", config.path().toLocal8Bit());
    }

    void writeConfig(const QString& name, const QByteArray& contents) {
        const QString path = config.filePath(name);
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }
};

TEST_F(LinuxSystemSettingsTest, languagesComeFromTheLocaleVariables) {
    struct Row {
        const char* name;
        QByteArray language, all, messages, lang;
        QStringList expected;
    };
    const auto tags = [](const char* text) {
        return QString::fromUtf8(text).split(u' ', Qt::SkipEmptyParts);
    };
    const Row rows[] = {
        {"nothing is set", "", "", "", "", {}},
        {"LANG with a codeset", "", "", "", "de_AT.UTF-8", tags("de-AT")},
        {"a modifier", "", "", "", "nl_NL@euro", tags("nl-NL")},
        {"codeset and modifier", "", "", "", "sr_RS.UTF-8@latin", tags("sr-RS")},
        {"no country", "", "", "", "fr", tags("fr")},
        {"LC_MESSAGES before LANG", "", "", "fr_CA.UTF-8", "de_DE.UTF-8", tags("fr-CA")},
        {"LC_ALL before everything", "", "nl_BE.UTF-8", "fr_CA.UTF-8", "de_DE.UTF-8", tags("nl-BE")},
        {"LANGUAGE stands first", "fr:de_DE", "", "", "en_US.UTF-8", tags("fr de-DE en-US")},
        {"no language twice", "de_DE:de", "", "", "de_DE.UTF-8", tags("de-DE de")},
        {"empty entries", ":fr::", "", "", "en_US.UTF-8", tags("fr en-US")},
        {"C in the list", "C:fr", "", "", "en_US.UTF-8", tags("fr en-US")},
        {"C locale", "de", "", "", "C", {}},
        {"C locale with a codeset", "de", "", "", "C.UTF-8", {}},
        {"POSIX locale", "", "POSIX", "", "de_DE.UTF-8", {}},
        {"a list without a locale", "de", "", "", "", {}},
    };
    const LinuxSystemSettings settings;
    for (const Row& row : rows) {
        environment.set("LANGUAGE", row.language);
        environment.set("LC_ALL", row.all);
        environment.set("LC_MESSAGES", row.messages);
        environment.set("LANG", row.lang);
        EXPECT_EQ(settings.preferredLanguages(), row.expected) << row.name;
    }
}

TEST_F(LinuxSystemSettingsTest, motionIsWantedUnlessAFileSaysOtherwise) {
    EXPECT_FALSE(LinuxSystemSettings().prefersReducedMotion());
}

TEST_F(LinuxSystemSettingsTest, desktopFilesSayWhetherMotionIsWanted) {
    struct Row {
        const char* file;
        QByteArray contents;
        bool expected;
    };
    const Row rows[] = {
        {"gtk-4.0/settings.ini", "[Settings]\ngtk-enable-animations=0\n", true},
        {"gtk-3.0/settings.ini", "[Settings]\ngtk-enable-animations=0\n", true},
        {"gtk-3.0/settings.ini", "[Settings]\r\n gtk-enable-animations = False \r\n", true},
        {"gtk-3.0/settings.ini", "[Settings]\ngtk-enable-animations=1\n", false},
        {"gtk-3.0/settings.ini", "[Settings]\ngtk-enable-animations=true\n", false},
        {"gtk-3.0/settings.ini", "[Settings]\ngtk-enable-animations=1\ngtk-enable-animations=0", true},
        {"gtk-3.0/settings.ini", "[Other]\ngtk-enable-animations=0\n", false},
        {"gtk-3.0/settings.ini", "gtk-enable-animations=0\n", false},
        {"gtk-3.0/settings.ini", "[Settings]\n#gtk-enable-animations=0\n", false},
        {"gtk-3.0/settings.ini", "", false},
        {"kdeglobals", "[KDE]\nAnimationDurationFactor=0\n", true},
        {"kdeglobals", "[KDE]\nAnimationDurationFactor=0.0\n", true},
        {"kdeglobals", "[KDE]\nAnimationDurationFactor=0.5\n", false},
        {"kdeglobals", "[KDE]\nAnimationDurationFactor=\n", false},
    };
    for (const Row& row : rows) {
        writeConfig(QString::fromUtf8(row.file), row.contents);
        EXPECT_EQ(LinuxSystemSettings().prefersReducedMotion(), row.expected) << row.file << '\n'
                                                                              << row.contents.constData();
        QFile::remove(config.filePath(QString::fromUtf8(row.file)));
    }
}

TEST_F(LinuxSystemSettingsTest, oneToolkitWithoutMotionIsEnough) {
    writeConfig(QStringLiteral("gtk-4.0/settings.ini"), "[Settings]\ngtk-enable-animations=1\n");
    writeConfig(QStringLiteral("gtk-3.0/settings.ini"), "[Settings]\ngtk-enable-animations=0\n");
    EXPECT_TRUE(LinuxSystemSettings().prefersReducedMotion());
}

TEST_F(LinuxSystemSettingsTest, motionIsReadOnce) {
    const LinuxSystemSettings settings;
    EXPECT_FALSE(settings.prefersReducedMotion());
    writeConfig(QStringLiteral("gtk-3.0/settings.ini"), "[Settings]\ngtk-enable-animations=0\n");
    EXPECT_FALSE(settings.prefersReducedMotion());
}

TEST_F(LinuxSystemSettingsTest, onlySomeDesktopsHaveAPlaceForMenus) {
    environment.unset("GTK_MODULES");
    environment.unset("XDG_CURRENT_DESKTOP");
    EXPECT_FALSE(LinuxSystemSettings::desktopMayShowMenus());
    for (const auto& [desktop, expected] : {std::pair("KDE", true), std::pair("Unity:Unity7:ubuntu", true),
                                            std::pair("ubuntu:GNOME", false), std::pair("XFCE", false)}) {
        environment.set("XDG_CURRENT_DESKTOP", desktop);
        EXPECT_EQ(LinuxSystemSettings::desktopMayShowMenus(), expected) << desktop;
    }
    environment.set("GTK_MODULES", "gail:appmenu-gtk-module");
    EXPECT_TRUE(LinuxSystemSettings::desktopMayShowMenus());
}

TEST_F(LinuxSystemSettingsTest, enginePathsAreAbsoluteAndStartWithStockfish) {
    const QStringList paths = LinuxSystemSettings().additionalEnginePaths();
    ASSERT_FALSE(paths.isEmpty());
    EXPECT_EQ(paths.first(), QStringLiteral("/usr/games/stockfish"));
    for (const char* name : {"ethereal-chess", "fairy-stockfish", "toga2", "glaurung"})
        EXPECT_TRUE(paths.contains(QStringLiteral("/usr/games/") + QString::fromUtf8(name))) << name;
    QStringList distinct = paths;
    distinct.removeDuplicates();
    EXPECT_EQ(distinct, paths);
    for (const QString& path : paths)
        EXPECT_TRUE(path.startsWith(u"/usr/games/")) << path.toStdString();
}

}  // namespace
}  // namespace orlix
