#include "update/update_error.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <vector>

namespace orlix {
namespace {

using Case = NativeUpdateError::Case;

struct Text {
    NativeUpdateError error;
    const char* text;
};

TEST(NativeUpdateError, everyCaseHasItsText) {
    const QString payload = QStringLiteral("so “it” is");
    const std::vector<Text> texts{
        {NativeUpdateError::incompatibleSystem(QStringLiteral("99.0")),
         "This update requires macOS 99.0 or later."},
        {NativeUpdateError::sizeMismatch(1000, 999),
         "The update has the wrong size (expected 1000, received 999 bytes)."},
        {NativeUpdateError::sizeMismatch(123456789012, 0),
         "The update has the wrong size (expected 123456789012, received 0 bytes)."},
        {NativeUpdateError::invalidDiskImage(payload), "The downloaded disk image is invalid: so “it” is"},
        {NativeUpdateError::invalidApplication(payload), "The downloaded application is invalid: so “it” is"},
        {NativeUpdateError::installerPreparationFailed(payload), "Could not prepare the updater: so “it” is"},
        {NativeUpdateError(Case::invalidDownloadURL),
         "The update URL must use HTTPS and the same host as the update feed."},
        {NativeUpdateError(Case::missingVerificationMetadata),
         "The update feed has no valid size and SHA-256 checksum."},
        {NativeUpdateError(Case::unexpectedResponse), "The update server returned an unexpected response."},
        {NativeUpdateError(Case::checksumMismatch), "The downloaded update failed SHA-256 verification."},
        {NativeUpdateError(Case::appRunningFromDiskImage),
         "Move Velmorandix Orlix to Applications before updating it."},
        {NativeUpdateError(Case::missingDeveloperSignature),
         "Automatic updates require a Developer ID signed application."},
        {NativeUpdateError(Case::missingInstallerHelper), "The Velmorandix Orlix updater helper is missing."},
    };
    for (const Text& text : texts)
        EXPECT_EQ(text.error.errorDescription(), QString::fromUtf8(text.text));
}

TEST(NativeUpdateError, textsMayHoldPlaceholders) {
    EXPECT_EQ(NativeUpdateError::invalidDiskImage(QStringLiteral("%1 %s")).errorDescription(),
              QStringLiteral("The downloaded disk image is invalid: %1 %s"));
}

TEST(SystemError, hasTheSystemsOwnText) {
    EXPECT_EQ(SystemError::fromErrno(ENOENT).errorDescription(), QStringLiteral("No such file or directory"));
}

}  // namespace
}  // namespace orlix
