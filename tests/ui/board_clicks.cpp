#include "board_clicks.h"

#include "game/game_manager.h"

namespace orlix::test {

std::vector<Square>& clicks() {
    static std::vector<Square> squares;
    return squares;
}

}  // namespace orlix::test

#ifdef __linux__
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier): the names are the linker's.
void __real__ZN5orlix11GameManager17handleSquareClickENS_6SquareE(orlix::GameManager* game,
                                                                  orlix::Square square);
void __wrap__ZN5orlix11GameManager17handleSquareClickENS_6SquareE(orlix::GameManager* game,
                                                                  orlix::Square square);
void __wrap__ZN5orlix11GameManager17handleSquareClickENS_6SquareE(orlix::GameManager* game,
                                                                  orlix::Square square) {
    orlix::test::clicks().push_back(square);
    __real__ZN5orlix11GameManager17handleSquareClickENS_6SquareE(game, square);
}
// NOLINTEND(bugprone-reserved-identifier)
}
#endif  // __linux__
