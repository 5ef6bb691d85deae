#include "core/uuid.h"

#include <cstring>
#include <random>

#include "core/hash_combine.h"

namespace orlix {
namespace {

// One generator a thread: an identity costs two numbers, and no lock.
std::mt19937_64& generator() {
    thread_local std::mt19937_64 engine = [] {
        std::random_device device;
        std::seed_seq seed{device(), device(), device(), device(), device(), device(), device(), device()};
        return std::mt19937_64(seed);
    }();
    return engine;
}

constexpr bool dashFollows(std::size_t byteIndex) {
    return byteIndex == 3 || byteIndex == 5 || byteIndex == 7 || byteIndex == 9;
}

std::optional<std::uint8_t> hexDigit(char digit) {
    if (digit >= '0' && digit <= '9') return static_cast<std::uint8_t>(digit - '0');
    if (digit >= 'a' && digit <= 'f') return static_cast<std::uint8_t>(digit - 'a' + 10);
    if (digit >= 'A' && digit <= 'F') return static_cast<std::uint8_t>(digit - 'A' + 10);
    return std::nullopt;
}

}  // namespace

Uuid Uuid::random() {
    std::mt19937_64& engine = generator();
    const std::array<std::uint64_t, 2> numbers{engine(), engine()};
    Uuid id;
    std::memcpy(id.bytes.data(), numbers.data(), id.bytes.size());
    id.bytes[6] = static_cast<std::uint8_t>((id.bytes[6] & 0x0F) | 0x40);  // version 4: random
    id.bytes[8] = static_cast<std::uint8_t>((id.bytes[8] & 0x3F) | 0x80);  // the standard variant
    return id;
}

std::optional<Uuid> Uuid::fromText(std::string_view text) {
    if (text.size() != 36) return std::nullopt;
    Uuid id;
    std::size_t position = 0;
    for (std::size_t i = 0; i < id.bytes.size(); ++i) {
        const auto high = hexDigit(text[position]);
        const auto low = hexDigit(text[position + 1]);
        if (!high || !low) return std::nullopt;
        id.bytes[i] = static_cast<std::uint8_t>(*high * 16 + *low);
        position += 2;
        if (dashFollows(i) && text[position++] != '-') return std::nullopt;
    }
    return id;
}

std::string Uuid::text() const {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    result.reserve(36);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        result += digits[bytes[i] / 16];
        result += digits[bytes[i] % 16];
        if (dashFollows(i)) result += '-';
    }
    return result;
}

}  // namespace orlix

std::size_t std::hash<orlix::Uuid>::operator()(const orlix::Uuid& id) const noexcept {
    std::array<std::uint64_t, 2> halves{};
    std::memcpy(halves.data(), id.bytes.data(), id.bytes.size());
    return orlix::hashOf(halves[0], halves[1]);
}
