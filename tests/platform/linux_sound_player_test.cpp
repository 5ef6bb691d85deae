#include "platform/linux/linux_sound_player.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <QtEndian>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "support/environment_guard.h"
#include "support/process_watch.h"

namespace orlix {
namespace {

using namespace std::chrono_literals;

constexpr auto patience = 60s;  ///< only a test that fails waits that long

/// What a test sees of an output, and with what it holds it up. Outlives the player and its worker.
struct OutputLog {
    std::mutex mutex;
    std::condition_variable changed;
    QStringList played;
    bool isBlocked = false;
    bool isDestroyed = false;
    int inPlay = 0;

    template <typename Condition>
    bool waitUntil(Condition condition) {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, patience, condition);
    }
    void setBlocked(bool blocked) {
        const std::lock_guard lock(mutex);
        isBlocked = blocked;
        changed.notify_all();
    }
};

class LoggingOutput : public SoundOutput {
  public:
    explicit LoggingOutput(std::shared_ptr<OutputLog> log) : log_(std::move(log)) {}
    ~LoggingOutput() override {
        std::unique_lock lock(log_->mutex);
        log_->changed.wait(lock, [this] { return !log_->isBlocked; });
        log_->isDestroyed = true;
        log_->changed.notify_all();
    }
    void play(const std::string& path) override {
        std::unique_lock lock(log_->mutex);
        ++log_->inPlay;
        log_->changed.notify_all();
        log_->changed.wait(lock, [this] { return !log_->isBlocked; });
        --log_->inPlay;
        log_->played.append(QFileInfo(QFile::decodeName(path.c_str())).fileName());
        log_->changed.notify_all();
    }

  private:
    std::shared_ptr<OutputLog> log_;
};

/// A thread left behind on purpose ends a moment after its last visible act.
bool threadCountReturnsTo(qint64 expected) {
    const auto limit = std::chrono::steady_clock::now() + patience;
    while (threadCount() != expected) {
        if (std::chrono::steady_clock::now() > limit) return false;
        std::this_thread::yield();
    }
    return true;
}

struct LinuxSoundPlayerTest : ::testing::Test {
    QTemporaryDir folder;
    std::shared_ptr<OutputLog> log = std::make_shared<OutputLog>();

    LinuxSoundPlayerTest() {
        for (const char* name : {"Tink", "Pop", "Morse", "Hero"}) {
            QFile file(folder.filePath(QString::fromUtf8(name) + QStringLiteral(".wav")));
            if (file.open(QIODevice::WriteOnly)) file.write("RIFF");
        }
    }
    std::unique_ptr<LinuxSoundPlayer> makePlayer() {
        return std::make_unique<LinuxSoundPlayer>(folder.path(), std::make_unique<LoggingOutput>(log));
    }
    bool waitForSounds(qsizetype count) {
        return log->waitUntil([this, count] { return log->played.size() >= count; });
    }
};

TEST_F(LinuxSoundPlayerTest, soundsReachTheOutputInOrder) {
    const auto player = makePlayer();
    for (const char* name : {"Morse", "Hero", "Tink", "Tink", "Pop"})
        player->play(QString::fromUtf8(name));
    ASSERT_TRUE(waitForSounds(5));
    EXPECT_EQ(log->played.join(u' '), QStringLiteral("Morse.wav Hero.wav Tink.wav Tink.wav Pop.wav"));
}

TEST_F(LinuxSoundPlayerTest, playsAgainAfterTheWorkerHasGone) {
    const qint64 threadsBefore = threadCount();
    const auto player = makePlayer();
    for (int round = 1; round <= 50; ++round) {
        player->play(QStringLiteral("Tink"));
        ASSERT_TRUE(waitForSounds(round));
    }
    EXPECT_LE(threadCount(), threadsBefore + 1);
}

TEST_F(LinuxSoundPlayerTest, unknownNamesAreSilence) {
    const auto player = makePlayer();
    player->play(QStringLiteral("Basso"));
    player->play(QString());
    player->play(QStringLiteral("../") + QFileInfo(folder.path()).fileName() + QStringLiteral("/Tink"));
    player->play(QStringLiteral("Pop"));
    ASSERT_TRUE(waitForSounds(1));
    EXPECT_EQ(log->played, QStringList{QStringLiteral("Pop.wav")});
}

TEST_F(LinuxSoundPlayerTest, unusedPlayerStartsNoThread) {
    const qint64 threadsBefore = threadCount();
    auto player = makePlayer();
    EXPECT_EQ(threadCount(), threadsBefore);
    player.reset();
    EXPECT_EQ(threadCount(), threadsBefore);
    EXPECT_TRUE(log->isDestroyed);
}

TEST_F(LinuxSoundPlayerTest, destructionClosesTheOutputAndLeavesNoThread) {
    const qint64 threadsBefore = threadCount();
    auto player = makePlayer();
    player->play(QStringLiteral("Hero"));
    ASSERT_TRUE(waitForSounds(1));
    player.reset();
    EXPECT_TRUE(log->isDestroyed);
    EXPECT_EQ(threadCount(), threadsBefore);
}

TEST_F(LinuxSoundPlayerTest, serverThatDoesNotAnswerHoldsUpNeitherPlayNorExit) {
    const qint64 threadsBefore = threadCount();
    auto player = makePlayer();
    log->setBlocked(true);
    player->play(QStringLiteral("Tink"));
    ASSERT_TRUE(log->waitUntil([this] { return log->inPlay == 1; }));
    for (int sound = 0; sound < 100; ++sound)
        player->play(QStringLiteral("Pop"));
    player.reset();
    EXPECT_FALSE(log->isDestroyed) << "it was not waited for: the server answers only now";

    log->setBlocked(false);
    EXPECT_TRUE(log->waitUntil([this] { return log->isDestroyed; }))
        << "the worker left behind still cleans up when the server answers after all";
    EXPECT_EQ(log->played, QStringList{QStringLiteral("Tink.wav")}) << "what waited is dropped";
    EXPECT_TRUE(threadCountReturnsTo(threadsBefore));
}

TEST_F(LinuxSoundPlayerTest, outputThatHangsWhileClosingDoesNotHoldUpExit) {
    const qint64 threadsBefore = threadCount();
    auto player = makePlayer();
    player->play(QStringLiteral("Tink"));
    ASSERT_TRUE(waitForSounds(1));
    log->setBlocked(true);
    player.reset();
    EXPECT_FALSE(log->isDestroyed) << "it was not waited for: the output closes only now";
    log->setBlocked(false);
    EXPECT_TRUE(log->waitUntil([this] { return log->isDestroyed; }));
    EXPECT_TRUE(threadCountReturnsTo(threadsBefore));
}

TEST_F(LinuxSoundPlayerTest, onlyAFewSoundsWaitForASlowServer) {
    const auto player = makePlayer();
    log->setBlocked(true);
    player->play(QStringLiteral("Tink"));
    ASSERT_TRUE(log->waitUntil([this] { return log->inPlay == 1; }));
    for (int sound = 0; sound < 100; ++sound)
        player->play(QStringLiteral("Pop"));
    log->setBlocked(false);
    const qsizetype expected = 1 + static_cast<qsizetype>(LinuxSoundPlayer::longestQueue);
    ASSERT_TRUE(waitForSounds(expected));
    player->play(QStringLiteral("Hero"));
    ASSERT_TRUE(waitForSounds(expected + 1));
    EXPECT_EQ(log->played.size(), expected + 1);
    EXPECT_EQ(log->played.last(), QStringLiteral("Hero.wav"));
}

const QString soundFolder = QStringLiteral(QT_TESTCASE_SOURCEDIR) + QStringLiteral("/../../resources/sounds");

TEST(LinuxSounds, realPlayerWithoutADeviceIsSilentAndLeavesNoThread) {
    EnvironmentGuard environment;
    for (const char* name : {"PULSE_SERVER", "CANBERRA_DRIVER", "XDG_RUNTIME_DIR"})
        environment.unset(name);
    if (QDir(QStringLiteral("/dev/snd"), QStringLiteral("pcm*p"), QDir::NoSort, QDir::System).count() > 0)
        GTEST_SKIP() << "this machine would play the sounds";
    const qint64 threadsBefore = threadCount();
    ::testing::internal::CaptureStderr();
    {
        LinuxSoundPlayer player(soundFolder);
        for (const char* name : {"Tink", "Pop", "Morse", "Hero"})
            player.play(QString::fromUtf8(name));
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(threadCount(), threadsBefore);
}

TEST(LinuxSounds, brokenDriverIsSilenceToo) {
    EnvironmentGuard environment;
    environment.set("CANBERRA_DRIVER", "no_such_driver");
    const qint64 threadsBefore = threadCount();
    {
        LinuxSoundPlayer player(soundFolder);
        for (const char* name : {"Tink", "Pop", "Morse", "Hero"})
            player.play(QString::fromUtf8(name));
    }
    EXPECT_EQ(threadCount(), threadsBefore);
}

TEST(LinuxSounds, filesAreShortQuietDistinctAndOfTheAgreedFormat) {
    QSet<QByteArray> distinct;
    for (const char* name : {"Tink", "Pop", "Morse", "Hero"}) {
        QFile file(soundFolder + u'/' + QString::fromUtf8(name) + QStringLiteral(".wav"));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        const QByteArray wave = file.readAll();
        ASSERT_GT(wave.size(), 44) << name;
        const auto number16 = [&](qsizetype at) { return qFromLittleEndian<quint16>(wave.constData() + at); };
        const auto number32 = [&](qsizetype at) { return qFromLittleEndian<quint32>(wave.constData() + at); };
        EXPECT_EQ(wave.left(4), "RIFF") << name;
        EXPECT_EQ(wave.mid(8, 8), "WAVEfmt ") << name;
        EXPECT_EQ(number16(20), 1) << name << ": PCM";
        EXPECT_EQ(number16(22), 1) << name << ": mono";
        EXPECT_EQ(number32(24), 44100U) << name << ": samples a second";
        EXPECT_EQ(number16(34), 16) << name << ": bits a sample";
        EXPECT_EQ(number32(40), static_cast<quint32>(wave.size() - 44)) << name;
        EXPECT_LT(wave.size() - 44, 2 * 44100) << name << ": below one second";
        int peak = 0;
        for (qsizetype at = 44; at + 1 < wave.size(); at += 2)
            peak = std::max(peak, std::abs(int{qFromLittleEndian<qint16>(wave.constData() + at)}));
        EXPECT_GT(peak, 3000) << name << ": audible";
        EXPECT_LT(peak, 12000) << name << ": quiet";
        distinct.insert(wave);
    }
    EXPECT_EQ(distinct.size(), 4);
}

TEST(LinuxSounds, defaultFolderLiesBesideTheProgramsFolder) {
    EXPECT_TRUE(LinuxSoundPlayer::defaultFolder().endsWith(u"/share/velmorandix-orlix/sounds"));
}

}  // namespace
}  // namespace orlix
