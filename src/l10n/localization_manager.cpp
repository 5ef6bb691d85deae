#include "l10n/localization_manager.h"

#include "l10n/text_table.h"
#include "platform/defaults_store.h"
#include "platform/system_settings.h"

namespace orlix {
namespace {

LocalizationManager* sharedInstance = nullptr;

QString languageKey() {
    return QStringLiteral("VelmorandixLanguage");
}

// Only the first preference counts, and only its beginning: a user who prefers Spanish and then German gets
// English.
Language systemLanguage(const QStringList& preferred) {
    const QString first = preferred.isEmpty() ? QStringLiteral("en") : preferred.first();
    for (const Language language : {Language::german, Language::dutch, Language::french}) {
        if (first.startsWith(rawValue(language))) return language;
    }
    return Language::english;
}

Language initialLanguage(const DefaultsStore& defaults, const SystemSettings& system) {
    if (const std::optional<QString> stored = defaults.string(languageKey())) {
        if (const std::optional<Language> language = languageFromRawValue(*stored)) return *language;
    }
    return systemLanguage(system.preferredLanguages());
}

}  // namespace

LocalizationManager& LocalizationManager::shared() {
    Q_ASSERT(sharedInstance);
    return *sharedInstance;
}

void LocalizationManager::registerShared(LocalizationManager* instance) {
    sharedInstance = instance;
}

LocalizationManager::LocalizationManager(DefaultsStore& defaults, const SystemSettings& system,
                                         QObject* parent)
    : QObject(parent), defaults_(defaults), currentLanguage_(initialLanguage(defaults, system)) {}

LocalizationManager::~LocalizationManager() = default;

void LocalizationManager::setCurrentLanguage(Language language) {
    currentLanguage_ = language;
    defaults_.setString(languageKey(), rawValue(language));
    Q_EMIT changed();
}

QString LocalizationManager::text(QStringView key) const {
    if (const std::optional<QString> found = lookUpText(currentLanguage_, key)) return *found;
    if (const std::optional<QString> found = lookUpText(Language::english, key)) return *found;
    return key.toString();
}

QString LocalizationManager::text(const char* key) const {
    return text(QString::fromUtf8(key));
}

QString LocalizationManager::text(ExtraText extra) const {
    return extraText(currentLanguage_, extra);
}

}  // namespace orlix
