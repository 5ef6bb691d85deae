#include "l10n/text_table.h"

#include <QHash>
#include <array>

namespace orlix {
namespace {

using Dictionary = QHash<QStringView, QStringView>;

std::array<Dictionary, allLanguages.size()> buildDictionaries() {
    std::array<Dictionary, allLanguages.size()> dictionaries;
    for (const Language language : allLanguages) {
        Dictionary& dictionary = dictionaries[static_cast<std::size_t>(language)];
        dictionary.reserve(static_cast<qsizetype>(textCount));
        for (const TextEntry& entry : texts(language))
            dictionary.insert(entry.key, entry.text);
    }
    return dictionaries;
}

const Dictionary& dictionary(Language language) {
    static const std::array<Dictionary, allLanguages.size()> dictionaries = buildDictionaries();
    return dictionaries[static_cast<std::size_t>(language)];
}

}  // namespace

TextList texts(Language language) {
    switch (language) {
        case Language::english: return englishTexts();
        case Language::german: return germanTexts();
        case Language::dutch: return dutchTexts();
        case Language::french: return frenchTexts();
    }
    Q_UNREACHABLE();
}

std::optional<QString> lookUpText(Language language, QStringView key) {
    const Dictionary& entries = dictionary(language);
    const auto found = entries.constFind(key);
    if (found == entries.cend()) return std::nullopt;
    return QString::fromRawData(found->data(), found->size());
}

}  // namespace orlix
