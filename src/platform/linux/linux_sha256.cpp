// SHA-256 by libcrypto.
#include <openssl/evp.h>

#include <new>

#include "platform/hexadecimal.h"
#include "platform/sha256.h"

namespace orlix {

struct Sha256::State {
    EVP_MD_CTX* context = EVP_MD_CTX_new();
    State() {
        // Both fail for lack of memory only.
        if (context == nullptr || EVP_DigestInit_ex(context, EVP_sha256(), nullptr) != 1)
            throw std::bad_alloc();
    }
    ~State() { EVP_MD_CTX_free(context); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;
};

Sha256::Sha256() : state_(std::make_unique<State>()) {}
Sha256::~Sha256() = default;

void Sha256::add(const void* bytes, std::size_t size) {
    EVP_DigestUpdate(state_->context, bytes, size);
}

std::string Sha256::finish() {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    EVP_DigestFinal_ex(state_->context, digest, &length);
    return hexadecimal(digest, length);
}

}  // namespace orlix
