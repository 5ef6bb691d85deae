// What the program itself adds to every move of a game between two engines, with its whole window open, as
// the engines see it. Main thread.
#pragma once

#include <QString>

#include "e2e/accessible_tree.h"
#include "e2e/desktop.h"

namespace orlix::e2e {

struct TurnOverhead {
    int moves = 0;
    /// Milliseconds from writing the best move by one engine to reading the next request by the other,
    /// without the pause of 200 ms between them. The way through both pipes is in it.
    double median = 0;
    double percentile99 = 0;
    double longest = 0;
    /// Milliseconds of processor time of all threads of the program a move: also for painting and the clock.
    double processor = 0;
};

/// Lets the program play a game of `plies` between two engines that answer at once. Throws
/// std::runtime_error when it is not played to its end.
TurnOverhead measureTurnOverhead(Desktop& desktop, AccessibleTree& tree, const QString& program, int plies);

}  // namespace orlix::e2e
