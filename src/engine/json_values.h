// Reads the values of what the program has stored as JSON. A value of another type is a value that is not
// there: nothing is converted. Any thread.
#pragma once

#include <QJsonValue>
#include <QString>

#include "core/uuid.h"

namespace orlix {

/// Returns whether `value` is of the type of `out`, which is worth something only then.
bool readValue(const QJsonValue& value, QString& out);
bool readValue(const QJsonValue& value, bool& out);
/// Of numbers only whole ones that fit.
bool readValue(const QJsonValue& value, qint64& out);
/// From its text.
bool readValue(const QJsonValue& value, Uuid& out);

}  // namespace orlix
