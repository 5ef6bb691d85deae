#include "update/code_identity.h"

#include <QFile>

#include "platform/code_signature.h"
#include "update/update_error.h"

namespace orlix {
namespace {

std::optional<QString> text(const std::optional<std::string>& utf8) {
    return utf8 ? std::optional(QString::fromStdString(*utf8)) : std::nullopt;
}

}  // namespace

CodeIdentity codeIdentity(CodeSignatureReader& reader, const QString& bundlePath) {
    SignatureInfo signature;
    switch (reader.read(QFile::encodeName(bundlePath).toStdString(), {}, signature)) {
        case SignatureFault::none: return {text(signature.identifier), text(signature.teamIdentifier)};
        case SignatureFault::unreadable:
            throw NativeUpdateError::invalidApplication(QStringLiteral("Could not read the code signature."));
        case SignatureFault::invalid:
            throw NativeUpdateError::invalidApplication(QStringLiteral("Code signature validation failed."));
        case SignatureFault::uninspectable:
            throw NativeUpdateError::invalidApplication(
                QStringLiteral("Could not inspect the signing identity."));
    }
    return {};
}

QString requiredTeam(CodeSignatureReader& reader, const QString& runningBundlePath) {
    const std::optional<QString> team = codeIdentity(reader, runningBundlePath).teamIdentifier;
    if (!team || team->isEmpty()) throw NativeUpdateError(NativeUpdateError::Case::missingDeveloperSignature);
    return *team;
}

}  // namespace orlix
