// The interface's texts: one list of (key, text) pairs a language, all with the same keys in the same order,
// compiled into the program. Immutable, may be read from any thread.
#pragma once

#include <QString>
#include <QStringView>
#include <cstddef>
#include <optional>
#include <span>

#include "l10n/language.h"

namespace orlix {

struct TextEntry {
    QStringView key;
    QStringView text;
};

inline constexpr std::size_t textCount = 149;
using TextList = std::span<const TextEntry, textCount>;

TextList englishTexts();
TextList germanTexts();
TextList dutchTexts();
TextList frenchTexts();

/// The list of `language`, in table order.
TextList texts(Language language);

/// The text of `key` in `language`, or nothing for a key that the table does not have. The string shares the
/// table's own characters. The first call sorts the keys, once for all languages.
std::optional<QString> lookUpText(Language language, QStringView key);

}  // namespace orlix
