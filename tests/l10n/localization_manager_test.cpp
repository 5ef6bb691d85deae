#include "l10n/localization_manager.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "support/fake_defaults_store.h"
#include "support/fake_system_settings.h"

namespace orlix {
namespace {

const QString languageKey = QStringLiteral("VelmorandixLanguage");

struct LocalizationManagerTest : ::testing::Test {
    FakeDefaultsStore defaults;
    FakeSystemSettings system;

    Language languageAtStart() { return LocalizationManager(defaults, system).currentLanguage(); }
};

TEST_F(LocalizationManagerTest, storedLanguageWinsOverTheSystems) {
    system.languages = {QStringLiteral("fr-FR")};
    for (const Language language : allLanguages) {
        defaults.setString(languageKey, rawValue(language));
        EXPECT_EQ(languageAtStart(), language) << rawValue(language).toStdString();
    }
}

TEST_F(LocalizationManagerTest, systemsFirstPreferenceDecidesByItsBeginning) {
    struct Row {
        const char* name;
        QStringList preferred;
        Language expected;
    };
    const Row rows[] = {
        {"Canadian French", {QStringLiteral("fr-CA")}, Language::french},
        {"Belgian Dutch", {QStringLiteral("nl-BE")}, Language::dutch},
        {"Austrian German", {QStringLiteral("de-AT")}, Language::german},
        {"bare tag", {QStringLiteral("de")}, Language::german},
        {"Brazilian Portuguese", {QStringLiteral("pt-BR")}, Language::english},
        {"English", {QStringLiteral("en-GB")}, Language::english},
        {"no preference", {}, Language::english},
        {"empty tag", {QString()}, Language::english},
        {"Spanish before German", {QStringLiteral("es"), QStringLiteral("de")}, Language::english},
        {"French before German", {QStringLiteral("fr"), QStringLiteral("de")}, Language::french},
        {"another language with the same beginning", {QStringLiteral("frr")}, Language::french},
        {"upper case is no beginning", {QStringLiteral("DE")}, Language::english},
        {"the code further on", {QStringLiteral("lb-de")}, Language::english},
    };
    for (const Row& row : rows) {
        system.languages = row.preferred;
        EXPECT_EQ(languageAtStart(), row.expected) << row.name;
    }
}

TEST_F(LocalizationManagerTest, unknownStoredValueIsIgnored) {
    system.languages = {QStringLiteral("nl-NL")};
    for (const QString& stored :
         {QStringLiteral("es"), QString(), QStringLiteral("DE"), QStringLiteral("de-AT")}) {
        defaults.setString(languageKey, stored);
        EXPECT_EQ(languageAtStart(), Language::dutch) << stored.toStdString();
    }
}

TEST_F(LocalizationManagerTest, storedValueOfAnotherTypeIsIgnored) {
    system.languages = {QStringLiteral("nl-NL")};
    defaults.setData(languageKey, QByteArrayLiteral("de"));
    EXPECT_EQ(languageAtStart(), Language::dutch);
}

TEST_F(LocalizationManagerTest, choosingTheLanguageAtStartWritesNothing) {
    system.languages = {QStringLiteral("de-DE")};
    EXPECT_EQ(languageAtStart(), Language::german);
    defaults.setString(languageKey, QStringLiteral("es"));
    EXPECT_EQ(languageAtStart(), Language::german);
    EXPECT_EQ(defaults.totalWriteCount(), 1) << "only this test's own write";
    EXPECT_EQ(defaults.string(languageKey), QStringLiteral("es"));
}

TEST_F(LocalizationManagerTest, everySetWritesAndAnnouncesAlsoTheSameValue) {
    LocalizationManager manager(defaults, system);
    QSignalSpy changes(&manager, &LocalizationManager::changed);
    manager.setCurrentLanguage(Language::german);
    EXPECT_EQ(defaults.string(languageKey), QStringLiteral("de"));
    EXPECT_EQ(defaults.writeCount(languageKey), 1);
    manager.setCurrentLanguage(Language::german);
    EXPECT_EQ(defaults.writeCount(languageKey), 2);
    EXPECT_EQ(changes.count(), 2);
    EXPECT_EQ(manager.currentLanguage(), Language::german);
}

TEST_F(LocalizationManagerTest, languageSurvivesARestart) {
    for (const Language language : allLanguages) {
        LocalizationManager(defaults, system).setCurrentLanguage(language);
        EXPECT_EQ(languageAtStart(), language);
    }
}

TEST_F(LocalizationManagerTest, observersOfAChangeSeeTheNewTexts) {
    LocalizationManager manager(defaults, system);
    QString seen;
    QObject::connect(&manager, &LocalizationManager::changed, &manager,
                     [&] { seen = manager.text("knight"); });
    manager.setCurrentLanguage(Language::french);
    EXPECT_EQ(seen, QStringLiteral("Cavalier"));
}

TEST_F(LocalizationManagerTest, textsFollowTheCurrentLanguage) {
    LocalizationManager manager(defaults, system);
    EXPECT_EQ(manager.text("status_check"), QStringLiteral("CHECK!"));
    manager.setCurrentLanguage(Language::german);
    EXPECT_EQ(manager.text("status_check"), QStringLiteral("SCHACH!"));
    manager.setCurrentLanguage(Language::dutch);
    EXPECT_EQ(manager.text("status_check"), QStringLiteral("SCHAAK!"));
    manager.setCurrentLanguage(Language::french);
    EXPECT_EQ(manager.text("status_check"), QStringLiteral("ÉCHEC !"));
}

TEST_F(LocalizationManagerTest, missingKeyIsShownAsItself) {
    LocalizationManager manager(defaults, system);
    for (const Language language : allLanguages) {
        manager.setCurrentLanguage(language);
        EXPECT_EQ(manager.text("no_such_key"), QStringLiteral("no_such_key"));
        EXPECT_EQ(manager.text(u"schlüssel"), QStringLiteral("schlüssel"));
        EXPECT_EQ(manager.text(u""), QString());
    }
}

TEST_F(LocalizationManagerTest, bothSpellingsOfAKeyFindTheSameText) {
    LocalizationManager manager(defaults, system);
    manager.setCurrentLanguage(Language::german);
    EXPECT_EQ(manager.text("bishop"), QStringLiteral("Läufer"));
    EXPECT_EQ(manager.text(QStringLiteral("bishop")), QStringLiteral("Läufer"));
}

TEST_F(LocalizationManagerTest, foundTextsOutliveTheManager) {
    QString text;
    {
        LocalizationManager manager(defaults, system);
        text = manager.text("queen");
    }
    text.append(u'!');
    EXPECT_EQ(text, QStringLiteral("Queen!"));
    EXPECT_EQ(LocalizationManager(defaults, system).text("queen"), QStringLiteral("Queen"));
}

TEST_F(LocalizationManagerTest, sharedIsWhatWasRegistered) {
    LocalizationManager manager(defaults, system);
    LocalizationManager::registerShared(&manager);
    EXPECT_EQ(&LocalizationManager::shared(), &manager);
    LocalizationManager::registerShared(nullptr);
}

}  // namespace
}  // namespace orlix
