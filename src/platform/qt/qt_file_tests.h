// The file system as Qt sees it. Stateless; any thread.
#pragma once

#include "platform/file_tests.h"

namespace orlix {

class QtFileTests : public FileTests {
  public:
    bool exists(const QString& path) const override;
    bool isExecutableFile(const QString& path) const override;
    QString homeDirectory() const override;
};

}  // namespace orlix
