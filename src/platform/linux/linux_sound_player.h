// Plays this program's own sound files. Owned by the composition root; called from the main thread.
#pragma once

#include <QString>
#include <chrono>
#include <memory>

#include "platform/linux/sound_output.h"
#include "platform/sound_player.h"

namespace orlix {

/// All work with files and devices is done on a worker thread that lives only while sounds wait to be
/// started. Sounds keep their order. While the sound server does not answer, a few sounds wait and the rest
/// is dropped: a late click is worse than none.
class LinuxSoundPlayer : public SoundPlayer {
  public:
    /// Longest time for which the destructor waits for a sound server.
    static constexpr std::chrono::milliseconds longestGoodbye{250};
    /// Sounds that may wait at the same time.
    static constexpr std::size_t longestQueue = 8;

    /// "share/velmorandix-orlix/sounds" of the installation, or of the build tree, that the running program
    /// belongs to. Needs the application object.
    static QString defaultFolder();

    /// The folder holds one file a sound, "<name>.wav".
    explicit LinuxSoundPlayer(const QString& folder);
    LinuxSoundPlayer(const QString& folder, std::unique_ptr<SoundOutput> output);
    LinuxSoundPlayer(const LinuxSoundPlayer&) = delete;
    LinuxSoundPlayer& operator=(const LinuxSoundPlayer&) = delete;
    /// Drops what waits and closes the output. An output that does not answer is left behind with its thread.
    ~LinuxSoundPlayer() override;

    void play(const QString& name) override;

  private:
    struct State;
    static void startWorker(const std::shared_ptr<State>& state);
    static void work(const std::shared_ptr<State>& state);

    const QString folder_;
    // Shared with the worker, which may have to outlive the player.
    std::shared_ptr<State> state_;
};

}  // namespace orlix
