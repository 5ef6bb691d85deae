// What an installation asks of the system. Every function may take its time.
#pragma once

#include "platform/application_starter.h"
#include "platform/code_signature.h"
#include "platform/file_operations.h"
#include "platform/process_watcher.h"
#include "platform/tool_runner.h"

namespace orlix {

struct InstallationSeams {
    FileOperations& files;
    ProcessWatcher& processes;
    ToolRunner& tools;
    CodeSignatureReader& signatures;
    ApplicationStarter& starter;
};

}  // namespace orlix
