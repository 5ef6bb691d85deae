#include "engine/json_values.h"

#include <optional>

namespace orlix {

bool readValue(const QJsonValue& value, QString& out) {
    out = value.toString();
    return value.isString();
}

bool readValue(const QJsonValue& value, bool& out) {
    out = value.toBool();
    return value.isBool();
}

bool readValue(const QJsonValue& value, qint64& out) {
    // A number that is not whole or does not fit gives back the fallback: two fallbacks tell it from a value.
    out = value.toInteger(0);
    return value.isDouble() && value.toInteger(1) == out;
}

bool readValue(const QJsonValue& value, Uuid& out) {
    const std::optional<Uuid> id = Uuid::fromText(value.toString().toStdString());
    if (id) out = *id;
    return id.has_value();
}

}  // namespace orlix
