// Joins the hashes of a value's fields.
#pragma once

#include <cstddef>
#include <functional>

namespace orlix {

/// A hash over all `fields`, which depends on their order.
template <class... Fields>
std::size_t hashOf(const Fields&... fields) noexcept {
    std::size_t seed = 0;
    const auto mix = [&seed](std::size_t hash) {
        // The odd constant is 2^64 divided by the golden ratio: it spreads neighbouring values apart.
        seed ^= hash + 0x9E3779B97F4A7C15ULL + (seed << 6) + (seed >> 2);
    };
    (mix(std::hash<Fields>{}(fields)), ...);
    return seed;
}

}  // namespace orlix
