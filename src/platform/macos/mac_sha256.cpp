// SHA-256 by CommonCrypto.
#include <CommonCrypto/CommonDigest.h>

#include <algorithm>
#include <limits>

#include "platform/hexadecimal.h"
#include "platform/sha256.h"

namespace orlix {

struct Sha256::State {
    CC_SHA256_CTX context;
    State() { CC_SHA256_Init(&context); }
};

Sha256::Sha256() : state_(std::make_unique<State>()) {}
Sha256::~Sha256() = default;

void Sha256::add(const void* bytes, std::size_t size) {
    constexpr std::size_t largest = std::numeric_limits<CC_LONG>::max();  // 32 bits
    const char* at = static_cast<const char*>(bytes);
    while (size > 0) {
        const std::size_t count = std::min(size, largest);
        CC_SHA256_Update(&state_->context, at, static_cast<CC_LONG>(count));
        at += count;
        size -= count;
    }
}

std::string Sha256::finish() {
    unsigned char digest[CC_SHA256_DIGEST_LENGTH];
    CC_SHA256_Final(digest, &state_->context);
    return hexadecimal(digest, sizeof digest);
}

}  // namespace orlix
