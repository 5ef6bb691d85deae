// The user defaults store: the few settings that outlive the program, under fixed keys.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace orlix {

/// Values of another type than the one asked for count as absent. Main thread only.
class DefaultsStore {
  public:
    virtual ~DefaultsStore() = default;

    virtual std::optional<QByteArray> data(const QString& key) const = 0;
    virtual std::optional<QString> string(const QString& key) const = 0;
    virtual std::optional<bool> boolean(const QString& key) const = 0;
    virtual void setData(const QString& key, const QByteArray& value) = 0;
    virtual void setString(const QString& key, const QString& value) = 0;
    virtual void setBoolean(const QString& key, bool value) = 0;
};

}  // namespace orlix
