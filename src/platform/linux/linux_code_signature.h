// Programs on Linux carry no code signature: every one is readable and unsigned. Stateless; any thread.
#pragma once

#include "platform/code_signature.h"

namespace orlix {

class LinuxCodeSignature : public CodeSignatureReader {
  public:
    SignatureFault read(const std::string&, const std::string&, SignatureInfo& result) override {
        result = {};
        return SignatureFault::none;
    }
};

}  // namespace orlix
