#include "platform/linux/session_bus.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtDBus/QDBusConnection>

namespace orlix {
namespace {

constexpr const char* addressVariable = "DBUS_SESSION_BUS_ADDRESS";

class SessionBus : public testing::Test {
  protected:
    void SetUp() override {
        // The D-Bus library looks for the address once in a process.
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        ASSERT_TRUE(folder_.isValid());
        qunsetenv(addressVariable);
        qputenv("XDG_RUNTIME_DIR", folder_.path().toUtf8());
    }

    QString path(const char* name) const { return folder_.filePath(QLatin1String(name)); }

    /// Puts a program in the place of the one that starts buses; it leaves a file behind.
    void watchStarts() const {
        QFile program(path("dbus-launch"));
        ASSERT_TRUE(program.open(QIODevice::WriteOnly));
        program.write("#!/bin/sh\ntouch '" + path("started").toUtf8() + "'\n");
        program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        program.close();
        qputenv("PATH", folder_.path().toUtf8() + ':' + qgetenv("PATH"));
        qputenv("DISPLAY", ":0");
    }

    bool wasStarted() const { return QFile::exists(path("started")); }

    /// Starts a bus and returns its address; it ends with the test.
    QByteArray startBus() {
        bus_.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                                   QStringLiteral("--print-address=1")});
        return bus_.waitForReadyRead() ? bus_.readLine().trimmed() : QByteArray();
    }

    void TearDown() override {
        if (bus_.state() == QProcess::NotRunning) return;
        bus_.kill();
        bus_.waitForFinished();
    }

  private:
    QTemporaryDir folder_;
    QProcess bus_;
};

/// The connection that Qt has already, without making one.
QDBusConnection knownConnection() {
    return QDBusConnection(QStringLiteral("qt_default_session_bus"));
}

TEST_F(SessionBus, noneIsStartedWhereTheDesktopHasNone) {
    const auto connect = [this](bool withoutStart) {
        watchStarts();
        if (withoutStart) startNoSessionBus();
        const bool isConnected = QDBusConnection::sessionBus().isConnected();
        _exit(isConnected ? 2 : wasStarted() ? 1 : 0);
    };
    EXPECT_EXIT(connect(false), testing::ExitedWithCode(1), "");
    EXPECT_EXIT(connect(true), testing::ExitedWithCode(0), "");
}

TEST_F(SessionBus, theDesktopsIsLeftAsItIs) {
    qputenv(addressVariable, "unix:path=/somewhere");
    startNoSessionBus();
    EXPECT_EQ(qgetenv(addressVariable), "unix:path=/somewhere");

    qunsetenv(addressVariable);
    QFile socket(path("bus"));
    ASSERT_TRUE(socket.open(QIODevice::WriteOnly));
    startNoSessionBus();
    EXPECT_FALSE(qEnvironmentVariableIsSet(addressVariable));
}

TEST_F(SessionBus, isConnectedInTheBackground) {
    const auto connect = [this] {
        const QByteArray address = startBus();
        if (address.isEmpty()) _exit(3);
        qputenv(addressVariable, address);
        if (knownConnection().isConnected()) _exit(2);
        connectToSessionBusAhead();
        QThreadPool::globalInstance()->waitForDone();
        const bool isConnected = knownConnection().isConnected();
        TearDown();
        _exit(isConnected ? 0 : 1);
    };
    EXPECT_EXIT(connect(), testing::ExitedWithCode(0), "");
}

TEST_F(SessionBus, withoutOneNothingConnects) {
    const auto connect = [this] {
        watchStarts();
        startNoSessionBus();
        connectToSessionBusAhead();
        QThreadPool::globalInstance()->waitForDone();
        _exit(knownConnection().isConnected() || wasStarted() ? 1 : 0);
    };
    EXPECT_EXIT(connect(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace orlix
