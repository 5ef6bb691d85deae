// Sounds through libcanberra, which reaches PulseAudio, PipeWire and ALSA. Owned by the sound player's
// worker.
#pragma once

#include <memory>
#include <string>

#include "platform/linux/sound_output.h"

namespace orlix {

/// The library is loaded and opened by the first sound that finds a device or a sound server, so a program
/// that is silent pays nothing for it. On a machine without it everything is silence.
class CanberraOutput : public SoundOutput {
  public:
    CanberraOutput();
    /// Cuts off what still sounds.
    ~CanberraOutput() override;

    void play(const std::string& path) override;

  private:
    class Context;
    std::unique_ptr<Context> context_;
};

}  // namespace orlix
