// The four languages of the interface.
#pragma once

#include <QString>
#include <QStringView>
#include <array>
#include <optional>

namespace orlix {

enum class Language { english, german, dutch, french };
inline constexpr std::array allLanguages{Language::english, Language::german, Language::dutch,
                                         Language::french};
QString rawValue(Language language);     ///< "en", "de", "nl", "fr"
QString displayName(Language language);  ///< in the language itself
QString flag(Language language);         ///< a short symbol for the language picker
std::optional<Language> languageFromRawValue(QStringView text);

}  // namespace orlix
