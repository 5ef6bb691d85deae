// A file system of two lists. Owned by the test.
#pragma once

#include <QSet>
#include <QString>

#include "platform/file_tests.h"

namespace orlix {

class FakeFileTests : public FileTests {
  public:
    QSet<QString> executables;  ///< exist and are executable
    QSet<QString> plainFiles;   ///< exist and are not
    QString home = QStringLiteral("/home/player");

    bool exists(const QString& path) const override {
        return executables.contains(path) || plainFiles.contains(path);
    }
    bool isExecutableFile(const QString& path) const override { return executables.contains(path); }
    QString homeDirectory() const override { return home; }
};

}  // namespace orlix
