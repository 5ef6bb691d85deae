// The identity that a code signature proves. Blocks while it reads the bundle: worker threads only.
#pragma once

#include <QString>
#include <optional>

namespace orlix {

class CodeSignatureReader;

/// Each only when the signature has it.
struct CodeIdentity {
    std::optional<QString> signingIdentifier;
    std::optional<QString> teamIdentifier;
};

/// Of a validly signed bundle, or of one without a signature where the system knows none.
/// @throws NativeUpdateError invalidApplication.
CodeIdentity codeIdentity(CodeSignatureReader& reader, const QString& bundlePath);

/// The team that signed the running application; never empty.
/// @throws NativeUpdateError missingDeveloperSignature without a team, and what `codeIdentity` throws.
QString requiredTeam(CodeSignatureReader& reader, const QString& runningBundlePath);

}  // namespace orlix
