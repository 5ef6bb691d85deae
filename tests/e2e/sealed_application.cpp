// The application under a second composition root, which only the tests build: seals stand for signatures,
// and the update feed, its authority and the disk-image tool are the test's. The rest is the real thing.
#include <QSslCertificate>

#include "application.h"
#include "platform/qt/qt_https_transport.h"
#include "updater/seal_signatures.h"

namespace {

using namespace orlix;

UpdateParts testParts() {
    QtHttpsTransport::Settings settings;
    settings.authorities = QSslCertificate::fromPath(qEnvironmentVariable("ORLIX_TEST_AUTHORITY"));
    UpdateParts parts;
    parts.transport = std::make_unique<QtHttpsTransport>(settings);
    parts.signatures = std::make_unique<test::SealSignatures>();
    parts.diskImageTool = qEnvironmentVariable("ORLIX_TEST_IMAGE_TOOL").toStdString();
    parts.feedAddress = qEnvironmentVariable("ORLIX_TEST_FEED");
    return parts;
}

}  // namespace

int main(int argc, char** argv) {
    return orlix::runApplication(argc, argv, testParts);
}
