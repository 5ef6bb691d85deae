// A random 128-bit identity with its standard text form.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orlix {

struct Uuid {
    std::array<std::uint8_t, 16> bytes{};

    bool operator==(const Uuid&) const = default;

    /// A fresh random (version 4) identity.
    static Uuid random();
    /// Reads 8-4-4-4-12 hexadecimal digits in either case, without braces; anything else is absent.
    static std::optional<Uuid> fromText(std::string_view text);
    /// Upper case, without braces.
    std::string text() const;
};

}  // namespace orlix

template <>
struct std::hash<orlix::Uuid> {
    std::size_t operator()(const orlix::Uuid& id) const noexcept;
};
