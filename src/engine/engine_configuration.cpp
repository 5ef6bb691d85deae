#include "engine/engine_configuration.h"

#include <QHashFunctions>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>
#include <string>

#include "engine/json_values.h"

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

bool read(const QJsonValue& value, EngineConfiguration& out) {
    if (!value.isObject()) return false;
    const QJsonObject object = value.toObject();
    return readValue(object[idKey], out.id) && readValue(object[nameKey], out.name) &&
           readValue(object[executablePathKey], out.executablePath) &&
           readValue(object[authorKey], out.author) && readValue(object[skillLevelKey], out.skillLevel) &&
           readValue(object[threadsKey], out.threads) && readValue(object[hashMBKey], out.hashMB) &&
           readValue(object[limitEloKey], out.limitElo) && readValue(object[eloKey], out.elo) &&
           readValue(object[isBuiltInKey], out.isBuiltIn);
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
