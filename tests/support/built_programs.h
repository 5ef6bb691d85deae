// Where the programs lie that the tests run as children. Defined in a file of its own: a path in the command
// line of every test would keep the compiler's cache from serving a clone in another folder.
#pragma once

namespace orlix {

extern const char* const scriptedEngineProgram;
extern const char* const diskImageToolProgram;

}  // namespace orlix
