// SHA-256 by libcrypto, which is loaded with the first digest: bound to the program, it would cost every
// start a millisecond and most starts need none.
#include <openssl/evp.h>

#include <stdexcept>

#include "platform/hexadecimal.h"
#include "platform/linux/loaded_library.h"
#include "platform/sha256.h"

namespace orlix {
namespace {

/// The functions of the library in use, or none of them.
struct Library {
    decltype(&EVP_MD_CTX_new) newContext = nullptr;
    decltype(&EVP_MD_CTX_free) freeContext = nullptr;
    decltype(&EVP_sha256) sha256 = nullptr;
    decltype(&EVP_DigestInit_ex) init = nullptr;
    decltype(&EVP_DigestUpdate) update = nullptr;
    decltype(&EVP_DigestFinal_ex) finish = nullptr;

    bool isLoaded() const { return newContext && freeContext && sha256 && init && update && finish; }
};

const Library& library() {
    static const Library loaded = [] {
        const LoadedLibrary crypto(ORLIX_LIBCRYPTO);
        Library functions;
        crypto.find("EVP_MD_CTX_new", functions.newContext);
        crypto.find("EVP_MD_CTX_free", functions.freeContext);
        crypto.find("EVP_sha256", functions.sha256);
        crypto.find("EVP_DigestInit_ex", functions.init);
        crypto.find("EVP_DigestUpdate", functions.update);
        crypto.find("EVP_DigestFinal_ex", functions.finish);
        return functions;
    }();
    return loaded;
}

}  // namespace

struct Sha256::State {
    State() {
        if (!functions.isLoaded()) throw std::runtime_error(ORLIX_LIBCRYPTO " cannot be loaded");
        context = functions.newContext();
        if (context != nullptr && functions.init(context, functions.sha256(), nullptr) == 1) return;
        functions.freeContext(context);
        throw std::runtime_error(ORLIX_LIBCRYPTO " has no SHA-256");
    }
    ~State() { functions.freeContext(context); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    const Library& functions = library();
    EVP_MD_CTX* context = nullptr;
};

Sha256::Sha256() : state_(std::make_unique<State>()) {}
Sha256::~Sha256() = default;

void Sha256::add(const void* bytes, std::size_t size) {
    state_->functions.update(state_->context, bytes, size);
}

std::string Sha256::finish() {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    state_->functions.finish(state_->context, digest, &length);
    return hexadecimal(digest, length);
}

}  // namespace orlix
