#include "l10n/sound_manager.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <memory>

#include "support/fake_sounds.h"

namespace orlix {
namespace {

struct SoundManagerTest : ::testing::Test {
    FakeSoundPlayer player;
    SoundManager manager{player};

    void runQueue() { QCoreApplication::processEvents(); }
};

TEST_F(SoundManagerTest, everyEffectHasItsName) {
    EXPECT_EQ(systemSoundName(SoundEffect::move), QStringLiteral("Tink"));
    EXPECT_EQ(systemSoundName(SoundEffect::capture), QStringLiteral("Pop"));
    EXPECT_EQ(systemSoundName(SoundEffect::check), QStringLiteral("Morse"));
    EXPECT_EQ(systemSoundName(SoundEffect::gameEnd), QStringLiteral("Hero"));
}

TEST_F(SoundManagerTest, soundIsPlayedFromTheMainQueueNotInTheCall) {
    manager.play(SoundEffect::move);
    EXPECT_TRUE(player.played.isEmpty());
    runQueue();
    EXPECT_EQ(player.played, QStringList{QStringLiteral("Tink")});
    runQueue();
    EXPECT_EQ(player.played.size(), 1);
}

TEST_F(SoundManagerTest, everyCallPlaysItsOwnSoundInOrder) {
    manager.play(SoundEffect::check);
    manager.play(SoundEffect::gameEnd);
    manager.play(SoundEffect::gameEnd);
    manager.play(SoundEffect::capture);
    runQueue();
    EXPECT_EQ(player.played, (QStringList{QStringLiteral("Morse"), QStringLiteral("Hero"),
                                          QStringLiteral("Hero"), QStringLiteral("Pop")}));
}

TEST_F(SoundManagerTest, eachSoundIsABlockOfItsOwnOnTheQueue) {
    QStringList seenBetween;
    manager.play(SoundEffect::move);
    QMetaObject::invokeMethod(
        &manager, [&] { seenBetween = player.played; }, Qt::QueuedConnection);
    manager.play(SoundEffect::capture);
    runQueue();
    EXPECT_EQ(seenBetween, QStringList{QStringLiteral("Tink")});
    EXPECT_EQ(player.played.size(), 2);
}

TEST_F(SoundManagerTest, startsUnmuted) {
    EXPECT_FALSE(manager.isMuted);
}

TEST_F(SoundManagerTest, mutedManagerQueuesNothing) {
    manager.isMuted = true;
    manager.play(SoundEffect::move);
    manager.isMuted = false;
    runQueue();
    EXPECT_TRUE(player.played.isEmpty());
}

TEST_F(SoundManagerTest, mutingDoesNotTakeBackWhatWasQueued) {
    manager.play(SoundEffect::move);
    manager.isMuted = true;
    runQueue();
    EXPECT_EQ(player.played, QStringList{QStringLiteral("Tink")});
}

TEST_F(SoundManagerTest, queuedSoundsOfADestroyedManagerAreDropped) {
    auto shortLived = std::make_unique<SoundManager>(player);
    shortLived->play(SoundEffect::gameEnd);
    shortLived.reset();
    runQueue();
    EXPECT_TRUE(player.played.isEmpty());
}

TEST_F(SoundManagerTest, sharedIsWhatWasRegistered) {
    SoundManager::registerShared(&manager);
    EXPECT_EQ(&SoundManager::shared(), &manager);
    SoundManager::registerShared(nullptr);
}

}  // namespace
}  // namespace orlix
