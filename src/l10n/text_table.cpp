#include "l10n/text_table.h"

#include <algorithm>
#include <array>

namespace orlix {
namespace {

// The rows in the order of their keys, which is the same for all languages.
std::array<std::size_t, textCount> buildIndex() {
    std::array<std::size_t, textCount> rows{};
    for (std::size_t row = 0; row < textCount; ++row)
        rows[row] = row;
    std::sort(rows.begin(), rows.end(), [entries = englishTexts()](std::size_t a, std::size_t b) {
        return entries[a].key < entries[b].key;
    });
    return rows;
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
    static const std::array<std::size_t, textCount> rows = buildIndex();
    const TextList entries = texts(language);
    const auto found =
        std::lower_bound(rows.begin(), rows.end(), key,
                         [&](std::size_t row, QStringView wanted) { return entries[row].key < wanted; });
    if (found == rows.end() || entries[*found].key != key) return std::nullopt;
    const QStringView text = entries[*found].text;
    return QString::fromRawData(text.data(), text.size());
}

}  // namespace orlix
