// The sounds that a game asks for; the sound manager plays them.
#pragma once

namespace orlix {

enum class SoundEffect { move, capture, check, gameEnd };

class GameSounds {
  public:
    virtual ~GameSounds() = default;
    virtual void play(SoundEffect effect) = 0;
};

}  // namespace orlix
