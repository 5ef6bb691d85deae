// The scripted engine as an executable that takes no arguments: a small script in a temporary folder that
// starts it with the flags of one test. Owned by the test; the folder goes with the object.
#pragma once

#include <QFile>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include "support/built_programs.h"

namespace orlix {

class ScriptedEngine {
  public:
    /// How the script runs the engine: in its own place, or as a child that it waits for.
    enum class Wrapper { exec, waitingShell };

    /// `flags` as scripted_engine.cpp lists them; the recording and the process ids are always asked for.
    explicit ScriptedEngine(const QStringList& flags = {}, Wrapper wrapper = Wrapper::exec,
                            const QString& fileName = QStringLiteral("scripted engine")) {
        path_ = folder_.filePath(fileName);
        QStringList words{QString::fromUtf8(scriptedEngineProgram),
                          QStringLiteral("--record=") + recordPath(),
                          QStringLiteral("--pid-file=") + pidPath()};
        words += flags;
        for (QString& word : words)
            word = u'\'' + word.replace(u'\'', QStringLiteral("'\\''")) + u'\'';
        const QString command = words.join(u' ');
        const QString body = wrapper == Wrapper::exec ? QStringLiteral("exec ") + command
                                                      : command + QStringLiteral("\nexit $?");
        QFile file(path_);
        if (!file.open(QIODevice::WriteOnly)) qFatal("cannot write the scripted engine's wrapper");
        file.write("#!/bin/sh\n" + body.toUtf8() + '\n');
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    const QString& path() const { return path_; }
    QString filePath(const QString& name) const { return folder_.filePath(name); }

    /// What the engine has read so far.
    QStringList receivedLines() const { return lines(recordPath()); }
    /// The engine's process id and its helper child's; empty until the engine is up.
    QList<qint64> processIds() const {
        QList<qint64> ids;
        const QStringList texts = lines(pidPath());
        for (const QString& text : texts)
            ids.append(text.toLongLong());
        return ids;
    }

    static QStringList lines(const QString& path) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) return {};
        return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }

  private:
    QString recordPath() const { return folder_.filePath(QStringLiteral("received")); }
    QString pidPath() const { return folder_.filePath(QStringLiteral("pids")); }

    QTemporaryDir folder_;
    QString path_;
};

}  // namespace orlix
