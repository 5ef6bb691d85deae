#include "platform/linux/linux_sound_player.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>

#include "platform/linux/canberra_output.h"

namespace orlix {

struct LinuxSoundPlayer::State {
    std::unique_ptr<SoundOutput> output;  ///< touched by the worker only

    std::mutex mutex;
    std::condition_variable workerEnded;
    std::deque<std::string> waiting;  ///< paths of files
    bool isWorking = false;
    bool isUsed = false;
    bool isClosing = false;
    std::thread worker;
};

QString LinuxSoundPlayer::defaultFolder() {
    const QString program = QCoreApplication::applicationDirPath();
    const QString installed = program + QStringLiteral("/../share/velmorandix-orlix/sounds");
    const QString beside = program + QStringLiteral("/share/velmorandix-orlix/sounds");
    return QDir::cleanPath(QFileInfo::exists(installed) ? installed : beside);
}

LinuxSoundPlayer::LinuxSoundPlayer(const QString& folder)
    : LinuxSoundPlayer(folder, std::make_unique<CanberraOutput>()) {}

LinuxSoundPlayer::LinuxSoundPlayer(const QString& folder, std::unique_ptr<SoundOutput> output)
    : folder_(folder), state_(std::make_shared<State>()) {
    state_->output = std::move(output);
}

LinuxSoundPlayer::~LinuxSoundPlayer() {
    std::unique_lock lock(state_->mutex);
    state_->waiting.clear();
    state_->isClosing = true;
    // Closing an output may block as well, so that is the worker's too; one never used is closed with
    // `state_`.
    if (state_->isUsed && !state_->isWorking) startWorker(state_);
    state_->workerEnded.wait_for(lock, longestGoodbye, [this] { return !state_->isWorking; });
    const bool isStuck = state_->isWorking;
    lock.unlock();
    if (!state_->worker.joinable()) return;
    if (isStuck)
        state_->worker.detach();
    else
        state_->worker.join();
}

void LinuxSoundPlayer::play(const QString& name) {
    if (name.contains(u'/')) return;
    const QByteArray path = QFile::encodeName(folder_ + u'/' + name + QStringLiteral(".wav"));
    const std::lock_guard lock(state_->mutex);
    if (state_->waiting.size() >= longestQueue) return;
    state_->waiting.push_back(path.toStdString());
    state_->isUsed = true;
    if (!state_->isWorking) startWorker(state_);
}

/// With the mutex held and no worker at work.
void LinuxSoundPlayer::startWorker(const std::shared_ptr<State>& state) {
    // The worker before has ended, but for its last instructions.
    if (state->worker.joinable()) state->worker.join();
    state->isWorking = true;
    try {
        state->worker = std::thread(&LinuxSoundPlayer::work, state);
    } catch (const std::system_error&) {
        // No thread to be had: silence this time.
        state->isWorking = false;
        state->waiting.clear();
    }
}

void LinuxSoundPlayer::work(const std::shared_ptr<State>& state) {
    std::unique_lock lock(state->mutex);
    while (!state->waiting.empty()) {
        const std::string path = std::move(state->waiting.front());
        state->waiting.pop_front();
        lock.unlock();
        std::error_code error;
        if (std::filesystem::is_regular_file(path, error)) state->output->play(path);
        lock.lock();
    }
    if (state->isClosing) {
        lock.unlock();
        state->output.reset();
        lock.lock();
    }
    state->isWorking = false;
    state->workerEnded.notify_all();
}

}  // namespace orlix
