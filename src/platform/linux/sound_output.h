// Where the sounds of the Linux sound player go. Used on the player's worker only, by one thread at a time.
#pragma once

#include <string>

namespace orlix {

/// Every function may block for as long as a sound server likes.
class SoundOutput {
  public:
    virtual ~SoundOutput() = default;

    /// Starts the sound file at `path` (in the file system's own encoding) beside those that still sound. Any
    /// failure is silence.
    virtual void play(const std::string& path) = 0;
};

}  // namespace orlix
