#include "update/code_identity.h"

#include <QFile>

#include "platform/code_signature.h"
#include "update/update_error.h"

namespace orlix {
namespace {

std::optional<QString> text(const std::optional<std::string>& utf8) {
    return utf8 ? std::optional(QString::fromStdString(*utf8)) : std::nullopt;
}

NativeUpdateError invalid(const char* reason) {
    return NativeUpdateError::invalidApplication(QString::fromLatin1(reason));
}

}  // namespace

CodeIdentity codeIdentity(CodeSignatureReader& reader, const QString& bundlePath) {
    SignatureInfo signature;
    switch (reader.read(QFile::encodeName(bundlePath).toStdString(), {}, signature)) {
        case SignatureFault::none: return {text(signature.identifier), text(signature.teamIdentifier)};
        case SignatureFault::unreadable: throw invalid("Could not read the code signature.");
        case SignatureFault::invalid: throw invalid("Code signature validation failed.");
        case SignatureFault::uninspectable: throw invalid("Could not inspect the signing identity.");
    }
    return {};
}

QString requiredTeam(CodeSignatureReader& reader, const QString& runningBundlePath) {
    const std::optional<QString> team = codeIdentity(reader, runningBundlePath).teamIdentifier;
    if (!team || team->isEmpty()) throw NativeUpdateError(NativeUpdateError::Case::missingDeveloperSignature);
    return *team;
}

}  // namespace orlix
