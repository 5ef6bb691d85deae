// The system's SHA-256, fed piece by piece. Not shared between threads.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace orlix {

/// The constructor throws std::runtime_error where the system has no such library.
class Sha256 {
  public:
    Sha256();
    ~Sha256();
    Sha256(const Sha256&) = delete;
    Sha256& operator=(const Sha256&) = delete;

    void add(const void* bytes, std::size_t size);
    /// The digest of everything that was added, as 64 lower-case hexadecimal digits. To be called once.
    std::string finish();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace orlix
