// Plays the four named sounds: the system's own on macOS, this program's on Linux.
#pragma once

#include <QString>

namespace orlix {

class SoundPlayer {
  public:
    virtual ~SoundPlayer() = default;

    /// Starts the sound and returns at once. Sounds overlap; an unknown name or a missing device is silence.
    virtual void play(const QString& name) = 0;
};

}  // namespace orlix
