// The composition root of the program that is shipped.
#include <QCoreApplication>

#include "application.h"
#include "update/disk_images.h"

#ifdef __APPLE__
#include "platform/macos/mac_code_signature.h"
#include "platform/qt/qt_https_transport.h"
#else
#include "platform/linux/linux_code_signature.h"
#include "platform/linux/loaded_https_transport.h"
#endif

namespace {

using namespace orlix;

UpdateParts systemParts() {
    UpdateParts parts;
#ifdef __APPLE__
    parts.transport = std::make_unique<QtHttpsTransport>();
    parts.signatures = std::make_unique<MacCodeSignature>();
#else
    parts.transport = std::make_unique<LoadedHttpsTransport>(
        LoadedHttpsTransport::defaultModulePath(QCoreApplication::applicationDirPath()));
    parts.signatures = std::make_unique<LinuxCodeSignature>();
#endif
    parts.diskImageTool = DiskImages::systemTool;
    return parts;
}

}  // namespace

int main(int argc, char** argv) {
    return runApplication(argc, argv, systemParts);
}
