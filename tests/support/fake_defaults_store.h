// A defaults store in memory that counts its writes. Owned by the test; main thread only.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <optional>
#include <variant>

#include "platform/defaults_store.h"

namespace orlix {

class FakeDefaultsStore : public DefaultsStore {
  public:
    std::optional<QByteArray> data(const QString& key) const override { return value<QByteArray>(key); }
    std::optional<QString> string(const QString& key) const override { return value<QString>(key); }
    std::optional<bool> boolean(const QString& key) const override { return value<bool>(key); }
    void setData(const QString& key, const QByteArray& value) override { write(key, value); }
    void setString(const QString& key, const QString& value) override { write(key, value); }
    void setBoolean(const QString& key, bool value) override { write(key, value); }

    /// How often `key` was written, whatever the type and also with the value that it had.
    int writeCount(const QString& key) const { return writes_.value(key); }
    int totalWriteCount() const { return totalWrites_; }
    /// Takes the key out of the store; the counts stay.
    void remove(const QString& key) { values_.remove(key); }

  private:
    using Value = std::variant<QByteArray, QString, bool>;

    template <typename T>
    std::optional<T> value(const QString& key) const {
        const auto found = values_.constFind(key);
        if (found == values_.cend()) return std::nullopt;
        const T* typed = std::get_if<T>(&*found);
        return typed ? std::optional<T>(*typed) : std::nullopt;
    }

    void write(const QString& key, Value value) {
        values_.insert(key, std::move(value));
        ++writes_[key];
        ++totalWrites_;
    }

    QHash<QString, Value> values_;
    QHash<QString, int> writes_;
    int totalWrites_ = 0;
};

}  // namespace orlix
