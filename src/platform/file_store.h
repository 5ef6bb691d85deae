// Writes whole files, or nothing.
#pragma once

#include <QByteArray>
#include <QString>

namespace orlix {

class FileStore {
  public:
    virtual ~FileStore() = default;

    /// Replaces the file at `path` by `contents`, atomically: on failure (also a full disk) what was there
    /// stays as it was. True on success.
    virtual bool writeAtomically(const QString& path, const QByteArray& contents) = 0;
};

}  // namespace orlix
