#include "l10n/extra_texts.h"

#include <gtest/gtest.h>

#include "l10n/localization_manager.h"
#include "l10n/text_table.h"
#include "support/fake_defaults_store.h"
#include "support/fake_system_settings.h"

namespace orlix {
namespace {

constexpr int extraTextCount = static_cast<int>(ExtraText::end);

TEST(ExtraTexts, everyCaseHasACleanTextInEveryLanguage) {
    for (const Language language : allLanguages) {
        for (int index = 0; index < extraTextCount; ++index) {
            const QString text = extraText(language, static_cast<ExtraText>(index));
            EXPECT_FALSE(text.isEmpty()) << rawValue(language).toStdString() << index;
            EXPECT_EQ(text, text.simplified()) << rawValue(language).toStdString() << index;
        }
    }
}

TEST(ExtraTexts, placesForValuesAreTheSameInEveryLanguage) {
    const QLatin1String places[] = {QLatin1String("%1"), QLatin1String("%2"), QLatin1String("%3")};
    for (const Language language : allLanguages) {
        for (int index = 0; index < extraTextCount; ++index) {
            const auto id = static_cast<ExtraText>(index);
            for (const QLatin1String place : places) {
                EXPECT_EQ(extraText(language, id).count(place), extraText(Language::english, id).count(place))
                    << rawValue(language).toStdString() << index;
            }
        }
    }
}

TEST(ExtraTexts, sentencesAreTranslated) {
    for (const ExtraText id :
         {ExtraText::noEngineRegistered, ExtraText::showLivePosition, ExtraText::noAutomatchGames,
          ExtraText::squareLegalTarget, ExtraText::engineAdded}) {
        for (const Language language : {Language::german, Language::dutch, Language::french})
            EXPECT_NE(extraText(language, id), extraText(Language::english, id));
    }
}

TEST(ExtraTexts, managerGivesThemInTheCurrentLanguage) {
    FakeDefaultsStore defaults;
    FakeSystemSettings system;
    LocalizationManager manager(defaults, system);
    EXPECT_EQ(manager.text(ExtraText::gameMenu), QStringLiteral("Game"));
    manager.setCurrentLanguage(Language::german);
    EXPECT_EQ(manager.text(ExtraText::gameMenu), QStringLiteral("Partie"));
    manager.setCurrentLanguage(Language::dutch);
    EXPECT_EQ(manager.text(ExtraText::gameMenu), QStringLiteral("Partij"));
    manager.setCurrentLanguage(Language::french);
    EXPECT_EQ(manager.text(ExtraText::gameMenu), QStringLiteral("Partie"));
    EXPECT_EQ(manager.text(ExtraText::engineAdded).arg(QStringLiteral("Kestrel")),
              QStringLiteral("Kestrel a été ajouté."));
}

}  // namespace
}  // namespace orlix
