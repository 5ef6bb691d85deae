#include "platform/posix/posix_process_launcher.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "platform/posix/posix_child.h"
#include "platform/qt/qt_file_tests.h"
#include "poll_calls.h"
#include "support/event_pump.h"
#include "support/process_watch.h"
#include "support/scripted_engine.h"

namespace orlix {
namespace {

using namespace std::chrono_literals;

// Collects what a child says, from whatever thread.
class Listener {
  public:
    ProcessLauncher::OutputHandler handler() {
        return [this](const QByteArray& chunk) {
            const std::lock_guard lock(mutex_);
            text_.append(chunk.constData(), static_cast<std::size_t>(chunk.size()));
        };
    }
    QByteArray text() const {
        const std::lock_guard lock(mutex_);
        return QByteArray::fromStdString(text_);
    }
    bool waitFor(const QByteArray& part) const {
        return pumpUntil([&] { return text().contains(part); });
    }

  private:
    mutable std::mutex mutex_;
    // No QByteArray: those share their bytes by counters that the thread sanitizer cannot see inside Qt.
    std::string text_;
};

class PosixProcessLauncherTest : public ::testing::Test {
  protected:
    std::unique_ptr<ChildProcess> launch(const ScriptedEngine& engine) {
        return launcher_.launch(engine.path(), {}, listener_.handler()).process;
    }
    bool waitUntilEmpty() {
        return pumpUntil([this] { return launcher_.childCount() == 0; });
    }
    static bool waitForProcess(const ScriptedEngine& engine) {
        return pumpUntil([&] { return !engine.processIds().isEmpty(); });
    }

    Listener listener_;
    PosixProcessLauncher launcher_;
};

TEST_F(PosixProcessLauncherTest, talksWithAChild) {
    const ScriptedEngine engine;
    const auto child = launch(engine);
    ASSERT_TRUE(child);
    child->write("uci\n");
    EXPECT_TRUE(listener_.waitFor("uciok\n"));
    child->write("isrea");
    child->write("dy\n");
    EXPECT_TRUE(listener_.waitFor("readyok\n"));
    EXPECT_EQ(engine.receivedLines(), QStringList({QStringLiteral("uci"), QStringLiteral("isready")}));
}

TEST_F(PosixProcessLauncherTest, standardErrorSharesThePipe) {
    const ScriptedEngine engine({QStringLiteral("--stderr")});
    const auto child = launch(engine);
    child->write("uci\n");
    EXPECT_TRUE(listener_.waitFor("uciok\n"));
}

TEST_F(PosixProcessLauncherTest, passesArgumentsOn) {
    const auto launched = launcher_.launch(QStringLiteral("/bin/echo"),
                                           {QStringLiteral("a b"), QStringLiteral("♞")}, listener_.handler());
    ASSERT_TRUE(launched.process);
    EXPECT_TRUE(listener_.waitFor("a b \xe2\x99\x9e\n"));
}

TEST_F(PosixProcessLauncherTest, runsAPathWithSpacesAndForeignLetters) {
    const ScriptedEngine engine({}, ScriptedEngine::Wrapper::exec,
                                QStringLiteral("Движок für 国际象棋 'x' .sh"));
    const auto child = launch(engine);
    ASSERT_TRUE(child);
    child->write("uci\n");
    EXPECT_TRUE(listener_.waitFor("uciok\n"));
}

TEST_F(PosixProcessLauncherTest, saysWhyALaunchFailed) {
    const ScriptedEngine folder;
    QFile plain(folder.filePath(QStringLiteral("plain")));
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
    plain.close();
    plain.setPermissions(QFile::ReadOwner);
    const qint64 descriptors = openDescriptorCount();
    const struct {
        QString path;
        int error;
    } cases[] = {
        {QStringLiteral("/no/such/engine"), ENOENT},
        {QStringLiteral("/"), EACCES},
        {plain.fileName(), EACCES},
    };
    for (const auto& [path, error] : cases) {
        const auto launched = launcher_.launch(path, {}, {});
        EXPECT_EQ(launched.process, nullptr);
        EXPECT_EQ(launched.error.toStdString(), std::generic_category().message(error)) << path.toStdString();
    }
    EXPECT_EQ(launcher_.childCount(), 0u);
    EXPECT_EQ(openDescriptorCount(), descriptors);
    EXPECT_EQ(zombieCount(), 0);
}

TEST_F(PosixProcessLauncherTest, aFileThatIsNoProgramFailsToLaunch) {
    const ScriptedEngine folder;
    const QString path = folder.filePath(QStringLiteral("no program"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("\x01\x02\x03 not a program");
    file.close();
    file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    const auto launched = launcher_.launch(path, {}, {});
    EXPECT_EQ(launched.process, nullptr);
    EXPECT_EQ(launched.error.toStdString(), std::generic_category().message(ENOEXEC));
}

#if defined(__linux__)
TEST_F(PosixProcessLauncherTest, givesTheChildThreeDescriptorsAndFreshSignals) {
    int inheritable[2];
    ASSERT_EQ(pipe(inheritable), 0);
    const int high = fcntl(inheritable[0], F_DUPFD, 500);
    ASSERT_GE(high, 500);
    sigset_t blocked;
    sigset_t before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, &before);
    const auto usr2Before = signal(SIGUSR2, SIG_IGN);

    const QString list = QDir::temp().filePath(QStringLiteral("orlix-fds-%1").arg(getpid()));
    const ScriptedEngine engine({QStringLiteral("--list-fds=") + list});
    const auto child = launch(engine);
    child->write("uci\n");
    EXPECT_TRUE(listener_.waitFor("uciok"));
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    signal(SIGUSR2, usr2Before);
    close(inheritable[0]);
    close(inheritable[1]);
    close(high);

    const QStringList lines = ScriptedEngine::lines(list);
    QFile::remove(list);
    EXPECT_EQ(lines.filter(QStringLiteral("fd ")),
              QStringList({QStringLiteral("fd 0"), QStringLiteral("fd 1"), QStringLiteral("fd 2")}));
    for (const char* name : {"SigBlk:", "SigIgn:"}) {
        const QStringList found = lines.filter(QLatin1String(name));
        ASSERT_EQ(found.size(), 1);
        // Signals 32 and 33 are the C library's own; it sets them as it likes.
        const quint64 own = found.first().section(u'\t', 1).toULongLong(nullptr, 16) & ~(quint64{3} << 31);
        EXPECT_EQ(own, 0u) << name;
    }
    EXPECT_TRUE(lines.contains(QStringLiteral("group 1"))) << "a process group of its own";
}
#endif

TEST_F(PosixProcessLauncherTest, worksWhenTheStandardDescriptorsAreClosed) {
    const ScriptedEngine engine;
    int saved[3];
    for (int fd = 0; fd < 3; ++fd) {
        saved[fd] = fcntl(fd, F_DUPFD_CLOEXEC, 100);
        close(fd);
    }
    const auto child = launch(engine);
    if (child) child->write("uci\n");
    const bool hasAnswered = child && listener_.waitFor("uciok\n");
    for (int fd = 0; fd < 3; ++fd) {
        if (saved[fd] >= 0) dup2(saved[fd], fd);
        close(saved[fd]);
    }
    EXPECT_TRUE(hasAnswered);
}

#if defined(__linux__)
TEST_F(PosixProcessLauncherTest, aChildWithoutAThreadToServeItIsGivenUpAltogether) {
    const qint64 descriptors = openDescriptorCount();
    // No address space holds such a stack, so every new thread fails.
    pthread_attr_t usual;
    pthread_attr_t huge;
    ASSERT_EQ(pthread_getattr_default_np(&usual), 0);
    ASSERT_EQ(pthread_attr_init(&huge), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&huge, std::size_t{1} << 60), 0);
    ASSERT_EQ(pthread_setattr_default_np(&huge), 0);
    const auto launched = launcher_.launch(QStringLiteral("/bin/sleep"), {QStringLiteral("1000")}, {});
    EXPECT_EQ(pthread_setattr_default_np(&usual), 0);
    pthread_attr_destroy(&huge);
    pthread_attr_destroy(&usual);
    EXPECT_EQ(launched.process, nullptr);
    EXPECT_EQ(launched.error.toStdString(), std::generic_category().message(EAGAIN));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "the child is neither alive nor a zombie";
    EXPECT_EQ(errno, ECHILD);
    EXPECT_EQ(launcher_.childCount(), 0u);
    EXPECT_EQ(openDescriptorCount(), descriptors);
}
#endif

TEST_F(PosixProcessLauncherTest, reapsAChildThatEndsByItself) {
    const qint64 descriptors = openDescriptorCount();
    for (const char* flag : {"--exit-at=start", "--crash-at=start"}) {
        const ScriptedEngine engine({QString::fromLatin1(flag)});
        const auto child = launch(engine);
        EXPECT_TRUE(waitUntilEmpty()) << flag;
        EXPECT_EQ(zombieCount(), 0) << flag;
        child->write("uci\n");  // nobody reads any more: no harm, no SIGPIPE
        child->terminate();
    }
    EXPECT_EQ(openDescriptorCount(), descriptors);
}

TEST_F(PosixProcessLauncherTest, writingToAChildThatClosesItsInputIsHarmless) {
    const ScriptedEngine engine({QStringLiteral("--exit-at=uci")});
    const auto child = launch(engine);
    for (int i = 0; i < 1000; ++i)
        child->write("uci\n");
    EXPECT_TRUE(waitUntilEmpty());
    for (int i = 0; i < 1000; ++i)
        child->write("uci\n");
}

TEST_F(PosixProcessLauncherTest, keepsTheOrderForAChildThatReadsLate) {
    // Far more than a pipe holds, so most of it waits in the queue.
    const auto launched = launcher_.launch(QStringLiteral("/bin/sh"),
                                           {QStringLiteral("-c"), QStringLiteral("read x; sleep 0.2; cat")},
                                           listener_.handler());
    ASSERT_TRUE(launched.process);
    QByteArray expected;
    launched.process->write("go\n");
    for (int i = 0; i < 60000; ++i) {
        const QByteArray line = "line " + QByteArray::number(i) + '\n';
        expected += line;
        launched.process->write(line);
    }
    EXPECT_TRUE(pumpUntil([&] { return listener_.text().size() >= expected.size(); }));
    EXPECT_EQ(listener_.text(), expected);
}

#if defined(__linux__)
TEST_F(PosixProcessLauncherTest, anOddChildIsWaitedForAndNotAskedAfter) {
    const QTemporaryDir folder;
    const struct {
        const char* name;
        const char* script;
        int queuedLines;
    } cases[] = {
        {"closed its output", "exec >&- 2>&-; until [ -e $0 ]; do sleep 0.05; done", 0},
        {"closed its input while lines wait", "read x; exec <&-; until [ -e $0 ]; do sleep 0.05; done",
         60000},
        {"reads nothing and closed its output", "exec >&- 2>&-; until [ -e $0 ]; do sleep 0.05; done", 60000},
        {"left a silent child of its own behind", "{ until [ -e $0 ]; do sleep 0.05; done } & exit 0", 60000},
    };
    for (const auto& [name, script, queuedLines] : cases) {
        const QString end = folder.filePath(QString::fromLatin1(name).replace(u' ', u'-'));
        const auto launched = launcher_.launch(QStringLiteral("/bin/sh"),
                                               {QStringLiteral("-c"), QString::fromLatin1(script), end}, {});
        ASSERT_TRUE(launched.process) << name;
        for (int i = 0; i < queuedLines; ++i)
            launched.process->write("a line of text\n");
        QTest::qWait(200);  // the child gets where it is odd; one that is late only makes it easier
        const int before = test::pollCalls();
        QTest::qWait(300);
        EXPECT_LT(test::pollCalls() - before, 100) << name << ": thousands if it were asked again and again";
        EXPECT_EQ(launcher_.childCount(), 1U) << name << ": it was there to wait for";
        ASSERT_TRUE(QFile(end).open(QIODevice::WriteOnly));
        EXPECT_TRUE(waitUntilEmpty()) << name;
        EXPECT_EQ(zombieCount(), 0) << name;
    }
}
#endif

TEST_F(PosixProcessLauncherTest, terminateSendsTheSignalAndClosesTheInput) {
    // The shell notes the signal, its child, which ignores it, the end of the input. Who is killed notes
    // nothing.
    const QTemporaryDir folder;
    const auto launched = launcher_.launch(
        QStringLiteral("/bin/sh"),
        {QStringLiteral("-c"),
         QStringLiteral(R"(trap 'touch "$0/signal"' TERM; (trap '' TERM; echo here; cat; touch "$0/end"))"),
         folder.path()},
        listener_.handler());
    ASSERT_TRUE(launched.process);
    ASSERT_TRUE(listener_.waitFor("here\n"));
    launched.process->terminate();
    EXPECT_TRUE(waitUntilEmpty());
    EXPECT_TRUE(QFile::exists(folder.filePath(QStringLiteral("signal"))));
    EXPECT_TRUE(QFile::exists(folder.filePath(QStringLiteral("end"))));
}

TEST_F(PosixProcessLauncherTest, nothingIsHeardAfterTerminate) {
    const ScriptedEngine engine({QStringLiteral("--ignore-quit"), QStringLiteral("--ignore-term"),
                                 QStringLiteral("--late"), QStringLiteral("--moves=e2e4")});
    const auto child = launch(engine);
    child->write("uci\n");
    ASSERT_TRUE(listener_.waitFor("uciok\n"));
    const QByteArray before = listener_.text();
    child->write("quit\n");
    child->terminate();
    EXPECT_TRUE(waitUntilEmpty());
    EXPECT_EQ(listener_.text(), before);
}

TEST_F(PosixProcessLauncherTest, killsWhatOutlivesTheSignalWithinThreeSeconds) {
    static_assert(PosixChild::grace < 3s);
    const struct {
        const char* name;
        QStringList flags;
        ScriptedEngine::Wrapper wrapper;
    } cases[] = {
        {"ignores both",
         {QStringLiteral("--ignore-term"), QStringLiteral("--ignore-quit")},
         ScriptedEngine::Wrapper::exec},
        {"stopped itself", {QStringLiteral("--stop-at=uci")}, ScriptedEngine::Wrapper::exec},
        {"reads nothing",
         {QStringLiteral("--deaf-at=uci"), QStringLiteral("--ignore-term")},
         ScriptedEngine::Wrapper::exec},
        {"has a stubborn child", {QStringLiteral("--child")}, ScriptedEngine::Wrapper::exec},
        {"a shell waits for it",
         {QStringLiteral("--ignore-term"), QStringLiteral("--ignore-quit")},
         ScriptedEngine::Wrapper::waitingShell},
        {"a shell waits, and a stubborn child",
         {QStringLiteral("--child"), QStringLiteral("--stop-at=uci")},
         ScriptedEngine::Wrapper::waitingShell},
    };
    const qint64 descriptors = openDescriptorCount();
    std::vector<std::unique_ptr<ScriptedEngine>> engines;
    std::vector<std::unique_ptr<ChildProcess>> children;
    for (const auto& [name, flags, wrapper] : cases) {
        engines.push_back(std::make_unique<ScriptedEngine>(flags, wrapper));
        children.push_back(launch(*engines.back()));
        children.back()->write("uci\n");
        ASSERT_TRUE(waitForProcess(*engines.back())) << name;
        ASSERT_TRUE(pumpUntil([&] { return !engines.back()->receivedLines().isEmpty(); })) << name;
    }
    QElapsedTimer elapsed;
    elapsed.start();
    for (const auto& child : children) {
        child->write("quit\n");
        child->terminate();
    }
    EXPECT_LT(elapsed.elapsed(), 1500) << "returns at once: the kill comes after two seconds";
    EXPECT_TRUE(pumpUntil([&] {
        for (const auto& engine : engines) {
            const QList<qint64> ids = engine->processIds();
            for (const qint64 id : ids) {
                if (isProcessAlive(id)) return false;
            }
        }
        return true;
    }));
    EXPECT_TRUE(waitUntilEmpty());
    EXPECT_EQ(zombieCount(), 0);
    children.clear();
    EXPECT_EQ(openDescriptorCount(), descriptors);
}

TEST_F(PosixProcessLauncherTest, anEngineThatAShellLeftBehindIsEndedToo) {
    // The shell is gone before anybody terminates it; its group is not.
    const auto launched = launcher_.launch(
        QStringLiteral("/bin/sh"),
        {QStringLiteral("-c"), QStringLiteral("(trap '' TERM; echo $$ here; sleep 1000) & exit 0")},
        listener_.handler());
    ASSERT_TRUE(launched.process);
    ASSERT_TRUE(listener_.waitFor("here\n"));
    EXPECT_TRUE(pumpUntil([] { return zombieCount() == 0; })) << "the shell itself is reaped";
    const qint64 group = listener_.text().split(' ').first().toLongLong();
    EXPECT_EQ(kill(static_cast<pid_t>(-group), 0), 0);
    launched.process->terminate();
    EXPECT_TRUE(waitUntilEmpty());
    EXPECT_TRUE(pumpUntil([&] { return kill(static_cast<pid_t>(-group), 0) != 0; }));
}

TEST_F(PosixProcessLauncherTest, destroyingTheHandleEndsTheChild) {
    const ScriptedEngine engine;
    {
        const auto child = launch(engine);
        ASSERT_TRUE(waitForProcess(engine));
    }
    EXPECT_TRUE(waitUntilEmpty());
    EXPECT_FALSE(isProcessAlive(engine.processIds().first()));
}

TEST_F(PosixProcessLauncherTest, hundredsOfShortLivesLeaveNothingBehind) {
    const ScriptedEngine engine;
    { const auto warm = launch(engine); }
    ASSERT_TRUE(waitUntilEmpty());
    const qint64 descriptors = openDescriptorCount();
    const qint64 threads = threadCount();
    for (int i = 0; i < 300; ++i) {
        const auto child = launch(engine);
        ASSERT_TRUE(child) << i;
        child->write("uci\n");
        if (i % 3 == 0) child->write("quit\n");
        if (i % 2 == 0) child->terminate();
    }
    EXPECT_TRUE(waitUntilEmpty());
    EXPECT_EQ(openDescriptorCount(), descriptors);
    EXPECT_TRUE(pumpUntil([&] { return threadCount() <= threads; }));
    EXPECT_EQ(zombieCount(), 0);
}

TEST_F(PosixProcessLauncherTest, shutsAllDownTogetherWithinItsLimit) {
    static_assert(PosixProcessLauncher::exitLimit < 3s);
    std::vector<std::unique_ptr<ScriptedEngine>> engines;
    std::vector<std::unique_ptr<ChildProcess>> children;
    for (int i = 0; i < 8; ++i) {
        const QStringList flags =
            i % 2 == 0 ? QStringList{QStringLiteral("--ignore-term"), QStringLiteral("--ignore-quit")}
                       : QStringList{QStringLiteral("--stop-at=start")};
        engines.push_back(std::make_unique<ScriptedEngine>(flags));
        children.push_back(launch(*engines.back()));
        ASSERT_TRUE(waitForProcess(*engines.back()));
    }
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_TRUE(launcher_.shutDown());
    EXPECT_LT(elapsed.elapsed(), 10'000) << "one after the other they would take sixteen seconds";
    EXPECT_EQ(launcher_.childCount(), 0u);
    EXPECT_EQ(zombieCount(), 0);
    for (const auto& engine : engines)
        EXPECT_FALSE(isProcessAlive(engine->processIds().first()));
    EXPECT_EQ(launcher_.launch(engines.front()->path(), {}, {}).process, nullptr);
}

TEST_F(PosixProcessLauncherTest, shutsDownAtOnceWhenTheEnginesAreWellBehaved) {
    const ScriptedEngine engine;
    const auto one = launch(engine);
    const auto two = launch(engine);
    ASSERT_TRUE(waitForProcess(engine));
    QElapsedTimer elapsed;
    elapsed.start();
    EXPECT_TRUE(launcher_.shutDown(120s));
    EXPECT_LT(elapsed.elapsed(), patienceMs);
}

TEST_F(PosixProcessLauncherTest, shutsDownAlsoWhenAHandlerIsHeldUp) {
    struct Gate {
        std::mutex mutex;
        std::condition_variable opened;
        bool isOpen = false;
        bool isReached = false;
    };
    const auto gate = std::make_shared<Gate>();
    const ScriptedEngine engine({QStringLiteral("--ignore-term"), QStringLiteral("--ignore-quit")});
    const auto launched = launcher_.launch(engine.path(), {}, [gate](const QByteArray&) {
        std::unique_lock lock(gate->mutex);
        gate->isReached = true;
        gate->opened.wait(lock, [&] { return gate->isOpen; });
    });
    launched.process->write("uci\n");
    ASSERT_TRUE(pumpUntil([&] {
        const std::lock_guard lock(gate->mutex);
        return gate->isReached;
    }));
    EXPECT_FALSE(launcher_.shutDown(500ms)) << "the thread is still held up";
    EXPECT_TRUE(pumpUntil([&] { return !isProcessAlive(engine.processIds().first()); }));
    {
        const std::lock_guard lock(gate->mutex);
        gate->isOpen = true;
    }
    gate->opened.notify_all();
    EXPECT_TRUE(waitUntilEmpty());
    EXPECT_EQ(zombieCount(), 0);
}

TEST(QtFileTests, knowsFilesThatCanBeRun) {
    const QtFileTests files;
    const ScriptedEngine engine;
    EXPECT_TRUE(files.exists(engine.path()));
    EXPECT_TRUE(files.isExecutableFile(engine.path()));
    const QString plain = engine.filePath(QStringLiteral("plain"));
    QFile file(plain);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_TRUE(files.exists(plain));
    EXPECT_FALSE(files.isExecutableFile(plain));
    const QString link = engine.filePath(QStringLiteral("link"));
    ASSERT_TRUE(QFile::link(engine.path(), link));
    EXPECT_TRUE(files.isExecutableFile(link));
    EXPECT_FALSE(files.isExecutableFile(QDir::tempPath())) << "a folder is no engine";
    EXPECT_TRUE(files.exists(QDir::tempPath()));
    for (const QString& absent :
         {QString(), QStringLiteral("/no/such"), engine.filePath(QStringLiteral("gone"))}) {
        EXPECT_FALSE(files.exists(absent));
        EXPECT_FALSE(files.isExecutableFile(absent));
    }
}

TEST(QtFileTests, namesTheHomeDirectoryWithoutASlash) {
    const QByteArray before = qgetenv("HOME");
    qputenv("HOME", "/home/someone/");
    EXPECT_EQ(QtFileTests().homeDirectory(), QStringLiteral("/home/someone"));
    qputenv("HOME", "/");
    EXPECT_EQ(QtFileTests().homeDirectory(), QString());
    qputenv("HOME", before);
}

}  // namespace
}  // namespace orlix
