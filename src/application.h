// The whole program: owns every shared object, in creation order, and hands references on. What an update
// talks to comes from the main function, so that the tests can run this program against a server of their
// own.
#pragma once

#include <QString>
#include <memory>
#include <string>

#include "platform/code_signature.h"
#include "platform/https_transport.h"
#include "update/update_service.h"

namespace orlix {

struct UpdateParts {
    std::unique_ptr<HttpsTransport> transport;
    std::unique_ptr<CodeSignatureReader> signatures;
    std::string diskImageTool;  ///< path
    QString feedAddress = UpdateService::defaultFeedAddress();
};

/// Runs the application until it quits, or answers a command line that asks for no window. `makeUpdateParts`
/// is called once the application object exists. The result is the exit status.
int runApplication(int argc, char** argv, UpdateParts (*makeUpdateParts)());

}  // namespace orlix
