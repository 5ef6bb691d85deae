#include "update/update_error.h"

#include <system_error>

namespace orlix {

SystemError SystemError::fromErrno(int error) {
    return SystemError(QString::fromStdString(std::generic_category().message(error)));
}

NativeUpdateError NativeUpdateError::incompatibleSystem(const QString& requiredVersion) {
    return {Case::incompatibleSystem, requiredVersion};
}

NativeUpdateError NativeUpdateError::sizeMismatch(qint64 expected, qint64 actual) {
    NativeUpdateError error(Case::sizeMismatch);
    error.expected_ = expected;
    error.actual_ = actual;
    return error;
}

NativeUpdateError NativeUpdateError::invalidDiskImage(const QString& reason) {
    return {Case::invalidDiskImage, reason};
}

NativeUpdateError NativeUpdateError::invalidApplication(const QString& reason) {
    return {Case::invalidApplication, reason};
}

NativeUpdateError NativeUpdateError::installerPreparationFailed(const QString& reason) {
    return {Case::installerPreparationFailed, reason};
}

QString NativeUpdateError::errorDescription() const {
    switch (kind_) {
        case Case::incompatibleSystem:
            return QStringLiteral("This update requires macOS ") + text_ + QStringLiteral(" or later.");
        case Case::sizeMismatch:
            return QStringLiteral("The update has the wrong size (expected ") + QString::number(expected_) +
                   QStringLiteral(", received ") + QString::number(actual_) + QStringLiteral(" bytes).");
        case Case::invalidDiskImage: return QStringLiteral("The downloaded disk image is invalid: ") + text_;
        case Case::invalidApplication:
            return QStringLiteral("The downloaded application is invalid: ") + text_;
        case Case::installerPreparationFailed:
            return QStringLiteral("Could not prepare the updater: ") + text_;
        case Case::invalidDownloadURL:
            return QStringLiteral("The update URL must use HTTPS and the same host as the update feed.");
        case Case::missingVerificationMetadata:
            return QStringLiteral("The update feed has no valid size and SHA-256 checksum.");
        case Case::unexpectedResponse:
            return QStringLiteral("The update server returned an unexpected response.");
        case Case::checksumMismatch:
            return QStringLiteral("The downloaded update failed SHA-256 verification.");
        case Case::appRunningFromDiskImage:
            return QStringLiteral("Move Velmorandix Orlix to Applications before updating it.");
        case Case::missingDeveloperSignature:
            return QStringLiteral("Automatic updates require a Developer ID signed application.");
        case Case::missingInstallerHelper:
            return QStringLiteral("The Velmorandix Orlix updater helper is missing.");
    }
    return {};
}

}  // namespace orlix
