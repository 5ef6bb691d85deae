// Files that exist in a test's memory only.
#pragma once

#include <QByteArray>
#include <QString>
#include <map>

#include "platform/file_store.h"

namespace orlix::test {

class FakeFileStore : public FileStore {
  public:
    std::map<QString, QByteArray> files;
    int attempts = 0;     ///< writes asked for, successful or not
    bool isFull = false;  ///< every write fails

    bool writeAtomically(const QString& path, const QByteArray& contents) override {
        ++attempts;
        if (isFull) return false;
        files[path] = contents;
        return true;
    }
};

}  // namespace orlix::test
