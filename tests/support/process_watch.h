// What this process holds of the system: descriptors, threads, memory; and whether another process is alive.
// Linux only; on other systems the counts are -1, and a comparison of two of them says nothing.
#pragma once

#include <signal.h>

#include <QDir>
#include <QFile>
#include <QString>
#include <thread>

namespace orlix {

inline qint64 openDescriptorCount() {
    const QDir folder(QStringLiteral("/proc/self/fd"));
    return folder.exists()
               ? static_cast<qint64>(
                     folder.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size())
               : -1;
}

/// A line of /proc/<id>/status, such as "Threads" or "State", without its name; empty without it.
inline QString processStatus(const QString& id, const QString& name) {
    QFile file(QStringLiteral("/proc/%1/status").arg(id));
    if (!file.open(QIODevice::ReadOnly)) return {};
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (const QString& line : lines) {
        if (line.startsWith(name + u':')) return line.mid(name.size() + 1).trimmed();
    }
    return {};
}

/// Threads of this process. The first call starts one and waits for its end: with the first thread of a
/// process a sanitizer starts one of its own, which is then in every count.
inline qint64 threadCount() {
    [[maybe_unused]] static const bool isFirst = [] {
        std::thread([] {}).join();
        return true;
    }();
    const QString text = processStatus(QStringLiteral("self"), QStringLiteral("Threads"));
    return text.isEmpty() ? -1 : text.toLongLong();
}

/// Kilobytes of resident memory now.
inline qint64 residentKilobytes() {
    const QString text = processStatus(QStringLiteral("self"), QStringLiteral("VmRSS"));
    return text.isEmpty() ? -1 : text.section(u' ', 0, 0).toLongLong();
}

/// Kilobytes of resident memory at most since the program started or `resetPeakMemory` was called.
inline qint64 peakResidentKilobytes() {
    const QString text = processStatus(QStringLiteral("self"), QStringLiteral("VmHWM"));
    return text.isEmpty() ? -1 : text.section(u' ', 0, 0).toLongLong();
}

inline void resetPeakMemory() {
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    if (file.open(QIODevice::WriteOnly)) file.write("5");
}

/// Children of this process that have ended and were not reaped.
inline int zombieCount() {
    int count = 0;
    const QStringList names = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    const QString self = QFile::symLinkTarget(QStringLiteral("/proc/self")).section(u'/', -1);
    for (const QString& name : names) {
        if (!name.front().isDigit()) continue;
        if (processStatus(name, QStringLiteral("PPid")) == self &&
            processStatus(name, QStringLiteral("State")).startsWith(u'Z'))
            ++count;
    }
    return count;
}

/// True while the process runs or is stopped; an unreaped one counts as ended.
inline bool isProcessAlive(qint64 id) {
    if (id <= 0 || kill(static_cast<pid_t>(id), 0) != 0) return false;
    return !processStatus(QString::number(id), QStringLiteral("State")).startsWith(u'Z');
}

}  // namespace orlix
