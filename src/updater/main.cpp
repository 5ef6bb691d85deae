// The composition root of the updater.
#include "platform/posix/posix_file_operations.h"
#include "platform/posix/posix_tool_runner.h"
#include "updater/updater_program.h"

#ifdef __APPLE__
#include "platform/macos/mac_code_signature.h"
#include "platform/macos/mac_process_watcher.h"
#include "platform/posix/tool_application_starter.h"
#else
#include "platform/linux/linux_code_signature.h"
#include "platform/linux/linux_process_watcher.h"
#include "platform/posix/posix_application_starter.h"
#endif

int main(int argc, char** argv) {
    using namespace orlix;
    detachFromStarter();
    PosixFileOperations files;
    PosixToolRunner tools;
#ifdef __APPLE__
    MacProcessWatcher processes;
    MacCodeSignature signatures;
    ToolApplicationStarter starter(tools, ToolApplicationStarter::systemTool);
#else
    // Only for the tests: without signatures every plan is refused.
    LinuxProcessWatcher processes;
    LinuxCodeSignature signatures;
    PosixApplicationStarter starter;
#endif
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    const InstallationSeams seams{files, processes, tools, signatures, starter};
    return runUpdater(arguments, seams, usualSettings(seams));
}
