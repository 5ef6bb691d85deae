// Any text is no square, or a square of the board whose name reads back to it.
#include "core/square.h"

#include "core/text.h"
#include "fuzz_target.h"

using orlix::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = orlix::fuzz::textOf(data, size);
    const auto square = orlix::Square::fromText(text);
    const std::string lower = orlix::lowerCased(orlix::trimmed(text));
    require(orlix::trimmed(lower) == lower, "trimmed text stays trimmed");
    if (!square) {
        require(lower.size() != 2 || lower[0] < 'a' || lower[0] > 'h' || lower[1] < '1' || lower[1] > '8',
                "a square's name is accepted");
        return 0;
    }
    require(square->algebraic() == lower, "the name is the text in lower case");
    require(orlix::Square::fromIndex(square->index()) == square, "the square is on the board");
    return 0;
}
