// Code signatures made of seals: bundles as test_bundle.h seals them, and single programs with a seal behind
// their last byte, which runs and is copied with them. Standard C++ only.
#pragma once

#include <filesystem>
#include <string>

#include "platform/code_signature.h"
#include "updater/test_bundle.h"

namespace orlix::test {

/// Appends a seal to a program; a program is sealed once.
void sealProgram(const std::filesystem::path& path, const std::string& identifier, const std::string& team);

/// Whether a sealed bundle would meet the requirement that its updater states.
bool meetsRequirement(const Seal& seal, const std::string& requirement);

/// A bundle's seal stands for its signature, and so does a program's; an empty team is none.
class SealSignatures : public CodeSignatureReader {
  public:
    SignatureFault read(const std::string& path, const std::string& requirement,
                        SignatureInfo& result) override;
};

}  // namespace orlix::test
