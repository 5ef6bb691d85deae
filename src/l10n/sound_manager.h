// Plays the four sound effects through the platform's sound player, unless muted.
#pragma once

#include <QObject>
#include <QString>

#include "game/game_sounds.h"

namespace orlix {

class SoundPlayer;

QString systemSoundName(SoundEffect effect);

class SoundManager : public QObject, public GameSounds {
    Q_OBJECT
  public:
    /// The registered instance; asserts that there is one.
    static SoundManager& shared();
    /// Called by the composition root; null takes the registration back.
    static void registerShared(SoundManager* instance);

    explicit SoundManager(SoundPlayer& player, QObject* parent = nullptr);
    ~SoundManager() override;

    bool isMuted = false;  ///< silences all sounds; nothing in the program sets it

    /// Queues the effect and returns at once.
    void play(SoundEffect effect) override;

  private:
    SoundPlayer& player_;
};

}  // namespace orlix
