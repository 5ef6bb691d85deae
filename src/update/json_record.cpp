#include "update/json_record.h"

#include <QJsonDocument>
#include <utility>

namespace orlix {

JsonRecord::JsonRecord(const QByteArray& json, QString name) : name_(std::move(name)) {
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        fail(QStringLiteral("is not valid JSON: ") + parseError.errorString() + QLatin1Char('.'));
    } else if (!document.isObject()) {
        fail(QStringLiteral("is not a JSON object."));
    } else {
        object_ = document.object();
    }
}

void JsonRecord::fail(const QString& what) {
    if (error_.isEmpty()) error_ = name_ + QLatin1Char(' ') + what;
}

void JsonRecord::failWrongType(QLatin1String key) {
    fail(QStringLiteral("has a value of the wrong type under \"") + key + QStringLiteral("\"."));
}

QJsonValue JsonRecord::present(QLatin1String key) const {
    const QJsonValue value = object_.value(key);
    return value.isNull() ? QJsonValue(QJsonValue::Undefined) : value;
}

QJsonValue JsonRecord::required(QLatin1String key) {
    const QJsonValue value = present(key);
    if (value.isUndefined()) fail(QStringLiteral("has no \"") + key + QStringLiteral("\"."));
    return value;
}

QString JsonRecord::text(QLatin1String key) {
    const QJsonValue value = required(key);
    if (!value.isString()) failWrongType(key);
    return value.toString();
}

bool JsonRecord::boolean(QLatin1String key) {
    const QJsonValue value = required(key);
    if (!value.isBool()) failWrongType(key);
    return value.toBool();
}

std::optional<QString> JsonRecord::optionalText(QLatin1String key) {
    const QJsonValue value = present(key);
    if (value.isUndefined()) return std::nullopt;
    if (!value.isString()) failWrongType(key);
    return value.toString();
}

std::optional<qint64> JsonRecord::optionalInteger(QLatin1String key) {
    const QJsonValue value = present(key);
    if (value.isUndefined()) return std::nullopt;
    // Two different fallbacks: whoever gets one of them has no integer.
    if (value.toInteger(0) != value.toInteger(1)) failWrongType(key);
    return value.toInteger();
}

}  // namespace orlix
