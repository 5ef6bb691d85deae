// One engine of the registry: where it lies and how it is set up.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <cstddef>
#include <optional>

#include "core/uuid.h"

namespace orlix {

struct EngineConfiguration {
    Uuid id = Uuid::random();
    QString name;
    QString executablePath;
    QString author;
    qint64 skillLevel = 20;  ///< 20 is full strength and is never sent
    qint64 threads = 2;
    qint64 hashMB = 64;
    bool limitElo = false;
    qint64 elo = 2000;
    bool isBuiltIn = false;

    bool operator==(const EngineConfiguration&) const = default;

    /// The entry that is never run as a child process.
    static const EngineConfiguration& builtInMini();
};

/// Over all fields, as equality is.
std::size_t qHash(const EngineConfiguration& engine, std::size_t seed = 0);

/// The registry's stored form, a JSON array of records with all ten keys.
QByteArray toJson(const QList<EngineConfiguration>& engines);

/// Nothing when the data is not such an array or any record lacks a key or has a value of another type.
std::optional<QList<EngineConfiguration>> engineConfigurationsFromJson(const QByteArray& json);

}  // namespace orlix
