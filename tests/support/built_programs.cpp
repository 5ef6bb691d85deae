#include "support/built_programs.h"

namespace orlix {

const char* const scriptedEngineProgram = ORLIX_SCRIPTED_ENGINE;
const char* const diskImageToolProgram = ORLIX_DISK_IMAGE_TOOL;

}  // namespace orlix
