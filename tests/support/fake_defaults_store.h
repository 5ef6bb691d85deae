// A defaults store in memory that counts its writes. Owned by the test; main thread only.
#pragma once

#include <QByteArray>
#include <QString>
#include <map>
#include <optional>
#include <utility>
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
    int writeCount(const QString& key) const {
        const auto found = writes_.find(key);
        return found == writes_.end() ? 0 : found->second;
    }
    int totalWriteCount() const { return totalWrites_; }
    /// Takes the key out of the store; the counts stay.
    void remove(const QString& key) { values_.erase(key); }

  private:
    using Value = std::variant<QByteArray, QString, bool>;

    template <typename T>
    std::optional<T> value(const QString& key) const {
        const auto found = values_.find(key);
        if (found == values_.end()) return std::nullopt;
        const T* typed = std::get_if<T>(&found->second);
        return typed ? std::optional<T>(*typed) : std::nullopt;
    }

    void write(const QString& key, Value value) {
        values_.insert_or_assign(key, std::move(value));
        ++writes_[key];
        ++totalWrites_;
    }

    std::map<QString, Value> values_;
    std::map<QString, int> writes_;
    int totalWrites_ = 0;
};

}  // namespace orlix
