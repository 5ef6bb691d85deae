// What the engine registry and the engine process ask of the file system.
#pragma once

#include <QString>

namespace orlix {

class FileTests {
  public:
    virtual ~FileTests() = default;

    virtual bool exists(const QString& path) const = 0;
    /// True for a regular file (or a link to one) that the current user may execute.
    virtual bool isExecutableFile(const QString& path) const = 0;
    /// The current user's home directory, without a slash at its end.
    virtual QString homeDirectory() const = 0;
};

}  // namespace orlix
