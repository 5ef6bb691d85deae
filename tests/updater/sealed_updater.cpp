// The updater under a second composition root, which only the tests build: seals stand for signatures, a
// stand-in for the disk-image tool, and a patience that a test can wait for. The rest is the real thing.
#include <cstdlib>

#include "platform/posix/posix_application_starter.h"
#include "platform/posix/posix_file_operations.h"
#include "platform/posix/posix_tool_runner.h"
#include "updater/seal_signatures.h"
#include "updater/updater_program.h"

#ifdef __APPLE__
#include "platform/macos/mac_process_watcher.h"
#else
#include "platform/linux/linux_process_watcher.h"
#endif

int main(int argc, char** argv) {
    using namespace orlix;
    detachFromStarter();
    PosixFileOperations files;
    PosixToolRunner tools;
#ifdef __APPLE__
    MacProcessWatcher processes;
#else
    LinuxProcessWatcher processes;
#endif
    test::SealSignatures signatures;
    PosixApplicationStarter starter;
    const InstallationSeams seams{files, processes, tools, signatures, starter};
    InstallationSettings settings = usualSettings(seams);
    if (const char* tool = std::getenv("ORLIX_TEST_IMAGE_TOOL")) settings.replacement.imageTool = tool;
    if (const char* limit = std::getenv("ORLIX_TEST_PATIENCE_MS"))
        settings.replacement.patience = std::chrono::milliseconds(std::atoi(limit));
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    return runUpdater(arguments, seams, settings);
}
