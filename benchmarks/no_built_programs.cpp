// The benchmarks' window has what updates need, but none is looked for: no disk image is opened.
#include "support/built_programs.h"

namespace orlix {

const char* const diskImageToolProgram = "";

}  // namespace orlix
