// The user defaults store on macOS: the domain of this program's bundle identifier, which `defaults write`
// reaches too. Owned by the composition root; main thread only.
#pragma once

#include "platform/defaults_store.h"

namespace orlix {

/// Every set is handed to the system's preferences service before the call returns.
class MacDefaultsStore : public DefaultsStore {
  public:
    std::optional<QByteArray> data(const QString& key) const override;
    std::optional<QString> string(const QString& key) const override;
    /// Also the numbers 0 and 1, as `defaults write ... -int 0` stores them.
    std::optional<bool> boolean(const QString& key) const override;
    void setData(const QString& key, const QByteArray& value) override;
    void setString(const QString& key, const QString& value) override;
    void setBoolean(const QString& key, bool value) override;
};

}  // namespace orlix
