#include "l10n/sound_manager.h"

#include "platform/post.h"
#include "platform/sound_player.h"

namespace orlix {
namespace {

SoundManager* sharedInstance = nullptr;

}  // namespace

QString systemSoundName(SoundEffect effect) {
    switch (effect) {
        case SoundEffect::move: return QStringLiteral("Tink");
        case SoundEffect::capture: return QStringLiteral("Pop");
        case SoundEffect::check: return QStringLiteral("Morse");
        case SoundEffect::gameEnd: return QStringLiteral("Hero");
    }
    Q_UNREACHABLE();
}

SoundManager& SoundManager::shared() {
    Q_ASSERT(sharedInstance);
    return *sharedInstance;
}

void SoundManager::registerShared(SoundManager* instance) {
    sharedInstance = instance;
}

SoundManager::SoundManager(SoundPlayer& player, QObject* parent) : QObject(parent), player_(player) {}

SoundManager::~SoundManager() = default;

void SoundManager::play(SoundEffect effect) {
    // Muting is a question of the call, not of the moment at which the queued sound's turn comes.
    if (isMuted) return;
    post(this, [this, effect] { player_.play(systemSoundName(effect)); });
}

}  // namespace orlix
