#include "e2e/engine_registry.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QUuid>
#include <stdexcept>

namespace orlix::e2e {

namespace {

const QString registryKey = QStringLiteral("Velmorandix_InstalledEngines");

}  // namespace

QString defaultsFile(const QString& home) {
    return home + QStringLiteral("/.config/velmorandix-orlix/defaults.ini");
}

void writeEngineScript(const QString& path, const QByteArray& text) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) throw std::runtime_error("an engine's script cannot be written");
    file.write(text);
    file.close();
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

void writeEngineRegistry(const QString& home, const QList<RegisteredEngine>& engines) {
    QJsonArray records;
    for (const RegisteredEngine& engine : engines)
        records.append(
            QJsonObject{{QStringLiteral("id"), QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()},
                        {QStringLiteral("name"), engine.name},
                        {QStringLiteral("executablePath"), engine.path},
                        {QStringLiteral("author"), QStringLiteral("Nobody")},
                        {QStringLiteral("skillLevel"), 20},
                        {QStringLiteral("threads"), 1},
                        {QStringLiteral("hashMB"), 16},
                        {QStringLiteral("limitElo"), false},
                        {QStringLiteral("elo"), 2000},
                        {QStringLiteral("isBuiltIn"), false}});
    QSettings settings(defaultsFile(home), QSettings::IniFormat);
    settings.setValue(registryKey, QJsonDocument(records).toJson(QJsonDocument::Compact));
}

QStringList registeredPaths(const QString& home) {
    const QSettings settings(defaultsFile(home), QSettings::IniFormat);
    const QByteArray json = settings.value(registryKey).toByteArray();
    QStringList paths;
    const QJsonArray records = QJsonDocument::fromJson(json).array();
    for (const QJsonValue& record : records)
        paths << record.toObject().value(QLatin1String("executablePath")).toString();
    return paths;
}

}  // namespace orlix::e2e
