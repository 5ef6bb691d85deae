// The few things that the update code does to files. Each throws SystemError, with the system's own text,
// when it fails. Blocks; any thread.
#pragma once

#include <QByteArray>
#include <QString>

namespace orlix::files {

/// With the folders above it; it may be there already.
void makeFolder(const QString& path);
/// Replaces a file that is called `to`. Both lie on one volume.
void move(const QString& from, const QString& to);
/// `to` does not exist yet.
void copy(const QString& from, const QString& to);
/// Everybody may read and run it, its owner may write it.
void makeProgram(const QString& path);
/// All of it or nothing; readable and writable for the user only.
void writeForUser(const QString& path, const QByteArray& contents);

/// A file or a link; a failure does not matter.
void remove(const QString& path) noexcept;
/// Bytes; 0 when it cannot be read.
qint64 sizeOf(const QString& path) noexcept;
/// Without links and dots as far as it exists.
QString resolved(const QString& path);

}  // namespace orlix::files
