// Listeners in place of sounds: the effects that a game asks for, and the names that a player is given.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

#include "game/game_sounds.h"
#include "platform/sound_player.h"

namespace orlix {

class FakeGameSounds : public GameSounds {
  public:
    std::vector<SoundEffect> played;  ///< in the order of the calls

    void play(SoundEffect effect) override { played.push_back(effect); }
};

class FakeSoundPlayer : public SoundPlayer {
  public:
    QStringList played;  ///< in the order of the calls

    void play(const QString& name) override { played.append(name); }
};

}  // namespace orlix
