// Counts the calls of poll on their way, from every thread. The linker leads them through here (see the test
// program's link options), on Linux only.
#pragma once

namespace orlix::test {

/// Calls of poll by the project's own code since the program started.
int pollCalls();

}  // namespace orlix::test
