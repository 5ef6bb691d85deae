#include "l10n/language.h"

namespace orlix {

QString rawValue(Language language) {
    switch (language) {
        case Language::english: return QStringLiteral("en");
        case Language::german: return QStringLiteral("de");
        case Language::dutch: return QStringLiteral("nl");
        case Language::french: return QStringLiteral("fr");
    }
    Q_UNREACHABLE();
}

QString displayName(Language language) {
    switch (language) {
        case Language::english: return QStringLiteral("English");
        case Language::german: return QStringLiteral("Deutsch");
        case Language::dutch: return QStringLiteral("Nederlands");
        case Language::french: return QStringLiteral("Français");
    }
    Q_UNREACHABLE();
}

// Letters, not flag emoji: many Linux systems carry no colour emoji font and would draw empty boxes, and a
// language is no country.
QString flag(Language language) {
    return rawValue(language).toUpper();
}

std::optional<Language> languageFromRawValue(QStringView text) {
    for (const Language language : allLanguages) {
        if (text == rawValue(language)) return language;
    }
    return std::nullopt;
}

}  // namespace orlix
