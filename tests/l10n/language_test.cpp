#include "l10n/language.h"

#include <gtest/gtest.h>

#include <QSet>

namespace orlix {
namespace {

TEST(Language, casesStandInThePickersOrderWithTheirNames) {
    struct Row {
        Language language;
        QString rawValue;
        QString displayName;
    };
    const Row rows[] = {{Language::english, QStringLiteral("en"), QStringLiteral("English")},
                        {Language::german, QStringLiteral("de"), QStringLiteral("Deutsch")},
                        {Language::dutch, QStringLiteral("nl"), QStringLiteral("Nederlands")},
                        {Language::french, QStringLiteral("fr"), QStringLiteral("Français")}};
    ASSERT_EQ(std::size(rows), allLanguages.size());
    for (std::size_t index = 0; index < std::size(rows); ++index) {
        EXPECT_EQ(allLanguages[index], rows[index].language);
        EXPECT_EQ(rawValue(allLanguages[index]), rows[index].rawValue);
        EXPECT_EQ(displayName(allLanguages[index]), rows[index].displayName);
    }
}

TEST(Language, rawValuesLeadBackToTheirLanguage) {
    for (const Language language : allLanguages)
        EXPECT_EQ(languageFromRawValue(rawValue(language)), language);
}

TEST(Language, otherTextsAreNoRawValue) {
    for (const QString& text : {QString(), QStringLiteral("es"), QStringLiteral("DE"),
                                QStringLiteral("de-AT"), QStringLiteral(" en"), QStringLiteral("English")})
        EXPECT_EQ(languageFromRawValue(text), std::nullopt) << text.toStdString();
}

TEST(Language, flagsAreShortDistinctAndDrawableWithAnyFont) {
    QSet<QString> seen;
    for (const Language language : allLanguages) {
        const QString symbol = flag(language);
        EXPECT_EQ(symbol.size(), 2);
        for (const QChar letter : symbol)
            EXPECT_TRUE(letter >= u'A' && letter <= u'Z');
        seen.insert(symbol);
    }
    EXPECT_EQ(seen.size(), 4);
}

}  // namespace
}  // namespace orlix
