// The user defaults store on Linux: an INI file that a user can read and edit. Owned by the composition root;
// main thread only.
#pragma once

#include <QSettings>
#include <QString>
#include <QVariant>

#include "platform/defaults_store.h"

namespace orlix {

/// Every set is on the disk, atomically, when the call returns. A write that fails (read-only folder, full
/// disk) leaves the file as it was; the value then holds until the program ends.
class LinuxDefaultsStore : public DefaultsStore {
  public:
    /// "velmorandix-orlix/defaults.ini" in $XDG_CONFIG_HOME, or in ~/.config when that is unset or relative.
    static QString defaultPath();

    /// The file and its folder are made by the first write.
    explicit LinuxDefaultsStore(const QString& path = defaultPath());
    ~LinuxDefaultsStore() override;

    std::optional<QByteArray> data(const QString& key) const override;
    std::optional<QString> string(const QString& key) const override;
    /// Also what a user writes by hand: true, false, yes, no, 1 or 0, in upper or lower case.
    std::optional<bool> boolean(const QString& key) const override;
    void setData(const QString& key, const QByteArray& value) override;
    void setString(const QString& key, const QString& value) override;
    void setBoolean(const QString& key, bool value) override;

  private:
    void write(const QString& key, const QVariant& value);

    QSettings settings_;
};

}  // namespace orlix
