// Writes files through a temporary neighbour that takes the old file's place once it is complete.
#pragma once

#include "platform/file_store.h"

namespace orlix {

class QtFileStore : public FileStore {
  public:
    bool writeAtomically(const QString& path, const QByteArray& contents) override;
};

}  // namespace orlix
