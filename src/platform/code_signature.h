// Reads code signatures. Blocks while it reads the bundle: worker threads only, any of them.
#pragma once

#include <optional>
#include <string>

namespace orlix {

/// Each only when the signature has it as text.
struct SignatureInfo {
    std::optional<std::string> identifier;
    std::optional<std::string> teamIdentifier;

    bool operator==(const SignatureInfo&) const = default;
};

enum class SignatureFault {
    none,
    unreadable,    ///< there is no code at the path
    invalid,       ///< the code is not what was signed, or does not meet the requirement
    uninspectable  ///< the signature's information cannot be read
};

class CodeSignatureReader {
  public:
    virtual ~CodeSignatureReader() = default;

    /// Validates the code at `path`, a bundle or a program, strictly: all architectures, nested code, and
    /// `requirement` (in the system's requirement language) unless it is empty. Then reads its signature.
    virtual SignatureFault read(const std::string& path, const std::string& requirement,
                                SignatureInfo& result) = 0;
};

}  // namespace orlix
