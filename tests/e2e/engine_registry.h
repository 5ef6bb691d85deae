// The registry of engines in the home that a program under test is started in, as the program itself keeps
// it.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace orlix::e2e {

struct RegisteredEngine {
    QString name;
    QString path;
};

/// Where the program keeps its defaults below `home`.
QString defaultsFile(const QString& home);
/// Writes a script that only its owner may read and run. Throws std::runtime_error when it cannot.
void writeEngineScript(const QString& path, const QByteArray& text);
/// Makes `engines`, in this order, all that the program starts with.
void writeEngineRegistry(const QString& home, const QList<RegisteredEngine>& engines);
/// The paths of the engines that the program has stored, in its order.
QStringList registeredPaths(const QString& home);

}  // namespace orlix::e2e
