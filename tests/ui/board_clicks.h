// Counts the board's calls of GameManager::handleSquareClick on their way, those without any effect too. The
// linker leads them through here (see the test program's link options), on Linux only.
#pragma once

#include <vector>

#include "core/square.h"

namespace orlix::test {

/// The squares clicked since it was last cleared, oldest first.
std::vector<Square>& clicks();

}  // namespace orlix::test
