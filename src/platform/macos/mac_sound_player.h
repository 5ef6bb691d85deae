// Plays the system's own alert sounds by name. Owned by the composition root; main thread only.
#pragma once

#include <memory>

#include "platform/sound_player.h"

namespace orlix {

class MacSoundPlayer : public SoundPlayer {
  public:
    MacSoundPlayer();
    MacSoundPlayer(const MacSoundPlayer&) = delete;
    MacSoundPlayer& operator=(const MacSoundPlayer&) = delete;
    ~MacSoundPlayer() override;

    void play(const QString& name) override;

  private:
    struct Copies;
    std::unique_ptr<Copies> copies_;
};

}  // namespace orlix
