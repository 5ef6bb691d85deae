// Code signatures through the Security framework. Stateless; any thread.
#pragma once

#include "platform/code_signature.h"

namespace orlix {

class MacCodeSignature : public CodeSignatureReader {
  public:
    SignatureFault read(const std::string& path, const std::string& requirement,
                        SignatureInfo& result) override;
};

}  // namespace orlix
