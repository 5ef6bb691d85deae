// The interface's current language and its texts. Owned by the composition root; main thread only.
#pragma once

#include <QObject>
#include <QString>
#include <QStringView>

#include "l10n/extra_texts.h"
#include "l10n/language.h"

namespace orlix {

class DefaultsStore;
class SystemSettings;

class LocalizationManager : public QObject {
    Q_OBJECT
  public:
    /// The registered instance; asserts that there is one.
    static LocalizationManager& shared();
    /// Called by the composition root; null takes the registration back.
    static void registerShared(LocalizationManager* instance);

    LocalizationManager(DefaultsStore& defaults, const SystemSettings& system, QObject* parent = nullptr);
    ~LocalizationManager() override;

    Language currentLanguage() const { return currentLanguage_; }
    /// Switches and stores the language, on every call, also for the same value.
    void setCurrentLanguage(Language language);

    /// The text of `key` in the current language, else in English, else the key itself.
    QString text(QStringView key) const;
    QString text(const char* key) const;
    /// A text that has no key, in the current language.
    QString text(ExtraText extra) const;

  Q_SIGNALS:
    /// After every call of setCurrentLanguage.
    void changed();

  private:
    DefaultsStore& defaults_;
    Language currentLanguage_;
};

}  // namespace orlix
