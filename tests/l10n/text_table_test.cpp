#include "l10n/text_table.h"

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QSet>
#include <future>
#include <vector>

#include "l10n/fixed_texts.h"

namespace orlix {
namespace {

std::string named(Language language, QStringView key) {
    return (rawValue(language) + u'/' + key.toString()).toStdString();
}

TEST(TextTable, everyEnglishTextStandsAsFixedAndInOrder) {
    ASSERT_EQ(std::size(fixed_texts::englishRows), 149U);
    const TextList list = texts(Language::english);
    ASSERT_EQ(list.size(), 149U);
    for (std::size_t row = 0; row < list.size(); ++row) {
        EXPECT_EQ(list[row].key, fixed_texts::englishRows[row].key) << "row " << row + 1;
        EXPECT_EQ(list[row].text, fixed_texts::englishRows[row].english)
            << named(Language::english, list[row].key);
    }
}

TEST(TextTable, fixedTranslationsStandAsTheyAre) {
    ASSERT_EQ(std::size(fixed_texts::translatedRows), 33U);
    for (const auto& row : fixed_texts::translatedRows) {
        EXPECT_EQ(lookUpText(Language::german, row.key), row.german.toString())
            << named(Language::german, row.key);
        EXPECT_EQ(lookUpText(Language::dutch, row.key), row.dutch.toString())
            << named(Language::dutch, row.key);
        EXPECT_EQ(lookUpText(Language::french, row.key), row.french.toString())
            << named(Language::french, row.key);
    }
}

TEST(TextTable, allLanguagesHaveTheSameKeysInTheSameOrder) {
    const TextList english = texts(Language::english);
    for (const Language language : allLanguages) {
        const TextList list = texts(language);
        QSet<QString> keys;
        for (std::size_t row = 0; row < list.size(); ++row) {
            EXPECT_EQ(list[row].key, english[row].key) << named(language, list[row].key);
            keys.insert(list[row].key.toString());
        }
        EXPECT_EQ(keys.size(), 149) << "a key stands twice in " << rawValue(language).toStdString();
    }
}

TEST(TextTable, noTextIsEmptyOrHasStrayWhiteSpace) {
    for (const Language language : allLanguages) {
        for (const TextEntry& entry : texts(language)) {
            const QString text = entry.text.toString();
            EXPECT_FALSE(text.isEmpty()) << named(language, entry.key);
            EXPECT_EQ(text, text.simplified()) << named(language, entry.key);
            for (const QChar character : text) {
                EXPECT_TRUE(character == u' ' || !character.isSpace())
                    << named(language, entry.key) << ": only plain spaces";
                EXPECT_TRUE(character.isPrint()) << named(language, entry.key);
            }
        }
    }
}

TEST(TextTable, numbersAndClosingMarksStayInEveryLanguage) {
    static const QRegularExpression number(QStringLiteral("[0-9]+"));
    const auto numbers = [](const QString& text) {
        QStringList found;
        for (auto match = number.globalMatch(text); match.hasNext();)
            found.append(match.next().captured());
        found.sort();
        return found;
    };
    const TextList english = texts(Language::english);
    for (const Language language : allLanguages) {
        const TextList list = texts(language);
        for (std::size_t row = 0; row < list.size(); ++row) {
            const QString original = english[row].text.toString();
            const QString text = list[row].text.toString();
            EXPECT_EQ(numbers(text), numbers(original)) << named(language, list[row].key);
            EXPECT_EQ(text.endsWith(u"..."), original.endsWith(u"...")) << named(language, list[row].key);
            EXPECT_EQ(text.endsWith(u':'), original.endsWith(u':')) << named(language, list[row].key);
        }
    }
}

// Buttons and tabs are laid out for the English texts; half as long again and a few letters still fit.
TEST(TextTable, textsOfControlsStayAboutAsShortAsTheEnglishOnes) {
    for (const Language language : allLanguages) {
        for (const TextEntry& entry : texts(language)) {
            const bool onControl = entry.key.startsWith(u"btn_") || entry.key.startsWith(u"tab_");
            const std::optional<QString> english = lookUpText(Language::english, entry.key);
            ASSERT_TRUE(english);
            if (!onControl) continue;
            EXPECT_LE(entry.text.size(), english->size() * 3 / 2 + 8) << named(language, entry.key);
        }
    }
}

TEST(TextTable, everyEntryIsFoundByItsKey) {
    for (const Language language : allLanguages) {
        for (const TextEntry& entry : texts(language))
            EXPECT_EQ(lookUpText(language, entry.key), entry.text.toString()) << named(language, entry.key);
    }
}

TEST(TextTable, unknownKeysHaveNoText) {
    for (const QString& key : {QStringLiteral("no_such_key"), QString(), QStringLiteral("QUEEN"),
                               QStringLiteral("queen "), QStringLiteral("quee")}) {
        EXPECT_EQ(lookUpText(Language::english, key), std::nullopt) << key.toStdString();
    }
}

TEST(TextTable, lookUpsWorkFromAnyThread) {
    std::vector<std::future<bool>> readers;
    for (const Language language : allLanguages) {
        readers.push_back(std::async(std::launch::async, [language] {
            for (int round = 0; round < 200; ++round) {
                for (const TextEntry& entry : texts(language)) {
                    if (lookUpText(language, entry.key) != entry.text) return false;
                }
            }
            return true;
        }));
    }
    for (auto& reader : readers)
        EXPECT_TRUE(reader.get());
}

}  // namespace
}  // namespace orlix
