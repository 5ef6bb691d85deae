// A second process that moves a name back when the first one ends in the middle of a move.
#pragma once

#include <sys/types.h>

#include <string>

#include "platform/file_operations.h"

namespace orlix {

class PosixMoveGuard : public MoveGuard {
  public:
    PosixMoveGuard() = default;
    /// Lets the second process end without doing anything, and waits for that.
    ~PosixMoveGuard() override;

    /// 0 or errno. Once, before anything else.
    int start(int asideFolder, const std::string& aside, int folder, const std::string& name);

  private:
    UniqueFd release_;  // a byte written here lets the second process go; its mere end means our death
    pid_t process_ = -1;
};

}  // namespace orlix
