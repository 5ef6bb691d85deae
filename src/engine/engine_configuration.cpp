#include "engine/engine_configuration.h"

#include <QHashFunctions>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <string>

namespace orlix {
namespace {

// The stored form's keys.
constexpr QLatin1String idKey("id");
constexpr QLatin1String nameKey("name");
constexpr QLatin1String executablePathKey("executablePath");
constexpr QLatin1String authorKey("author");
constexpr QLatin1String skillLevelKey("skillLevel");
constexpr QLatin1String threadsKey("threads");
constexpr QLatin1String hashMBKey("hashMB");
constexpr QLatin1String limitEloKey("limitElo");
constexpr QLatin1String eloKey("elo");
constexpr QLatin1String isBuiltInKey("isBuiltIn");

bool read(const QJsonValue& value, QString& out) {
    out = value.toString();
    return value.isString();
}

bool read(const QJsonValue& value, bool& out) {
    out = value.toBool();
    return value.isBool();
}

bool read(const QJsonValue& value, qint64& out) {
    // A number that is not whole or does not fit gives back the fallback: two fallbacks tell it from a value.
    out = value.toInteger(0);
    return value.isDouble() && value.toInteger(1) == out;
}

bool read(const QJsonValue& value, Uuid& out) {
    QString text;
    if (!read(value, text)) return false;
    const std::optional<Uuid> id = Uuid::fromText(text.toStdString());
    if (id) out = *id;
    return id.has_value();
}

bool read(const QJsonValue& value, EngineConfiguration& out) {
    if (!value.isObject()) return false;
    const QJsonObject object = value.toObject();
    return read(object[idKey], out.id) && read(object[nameKey], out.name) &&
           read(object[executablePathKey], out.executablePath) && read(object[authorKey], out.author) &&
           read(object[skillLevelKey], out.skillLevel) && read(object[threadsKey], out.threads) &&
           read(object[hashMBKey], out.hashMB) && read(object[limitEloKey], out.limitElo) &&
           read(object[eloKey], out.elo) && read(object[isBuiltInKey], out.isBuiltIn);
}

QJsonObject jsonObject(const EngineConfiguration& engine) {
    return {{idKey, QString::fromStdString(engine.id.text())},
            {nameKey, engine.name},
            {executablePathKey, engine.executablePath},
            {authorKey, engine.author},
            {skillLevelKey, engine.skillLevel},
            {threadsKey, engine.threads},
            {hashMBKey, engine.hashMB},
            {limitEloKey, engine.limitElo},
            {eloKey, engine.elo},
            {isBuiltInKey, engine.isBuiltIn}};
}

}  // namespace

const EngineConfiguration& EngineConfiguration::builtInMini() {
    static const EngineConfiguration mini = [] {
        EngineConfiguration engine;
        engine.id = *Uuid::fromText("00000000-0000-0000-0000-000000000001");
        engine.name = QStringLiteral("Velmorandix Mini (Built-in)");
        engine.author = QStringLiteral("Velmorandix Orlix");
        engine.skillLevel = 10;
        engine.threads = 1;
        engine.hashMB = 16;
        engine.isBuiltIn = true;
        return engine;
    }();
    return mini;
}

QByteArray toJson(const QList<EngineConfiguration>& engines) {
    QJsonArray array;
    for (const EngineConfiguration& engine : engines)
        array.append(jsonObject(engine));
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

std::optional<QList<EngineConfiguration>> engineConfigurationsFromJson(const QByteArray& json) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !document.isArray()) return std::nullopt;
    QList<EngineConfiguration> engines;
    const QJsonArray array = document.array();
    for (const QJsonValue value : array) {
        EngineConfiguration engine;
        if (!read(value, engine)) return std::nullopt;
        engines.append(engine);
    }
    return engines;
}

std::size_t qHash(const EngineConfiguration& engine, std::size_t seed) {
    return qHashMulti(seed, std::hash<Uuid>{}(engine.id), engine.name, engine.executablePath, engine.author,
                      engine.skillLevel, engine.threads, engine.hashMB, engine.limitElo, engine.elo,
                      engine.isBuiltIn);
}

}  // namespace orlix
