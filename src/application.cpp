#include "application.h"

#include <QApplication>
#include <QTimer>
#include <QWindow>
#include <chrono>
#include <cstdio>
#include <cstring>

#include "automatch/automatch_manager.h"
#include "engine/engine_manager.h"
#include "engine/uci_engine_process.h"
#include "game/game_manager.h"
#include "l10n/localization_manager.h"
#include "l10n/sound_manager.h"
#include "platform/posix/posix_detached_starter.h"
#include "platform/posix/posix_process_launcher.h"
#include "platform/posix/posix_quit_signals.h"
#include "platform/posix/posix_tool_runner.h"
#include "platform/qt/lean_memory.h"
#include "platform/qt/qt_file_dialogs.h"
#include "platform/qt/qt_file_store.h"
#include "platform/qt/qt_file_tests.h"
#include "platform/qt/qt_pasteboard.h"
#include "platform/qt/qt_time_source.h"
#include "records/pgn_exporter.h"
#include "ui/app_delegate.h"
#include "ui/first_icons.h"
#include "ui/lean_style.h"
#include "ui/main_window.h"
#include "ui/theme.h"
#include "update/update_controller.h"
#include "update/update_service.h"

#ifdef __APPLE__
#include "platform/macos/mac_defaults_store.h"
#include "platform/macos/mac_sound_player.h"
#include "platform/macos/mac_system_settings.h"
#else
#include "platform/linux/font_configuration.h"
#include "platform/linux/linux_defaults_store.h"
#include "platform/linux/linux_sound_player.h"
#include "platform/linux/linux_system_settings.h"
#include "platform/linux/session_bus.h"
#include "platform/linux/window_memory.h"
#endif

namespace {

using namespace orlix;

constexpr const char* versionText = ORLIX_APP_NAME " " ORLIX_VERSION " (" ORLIX_BUILD ")\n";
constexpr const char* helpText =
    "Usage: velmorandix-orlix [--version | --help]\n"
    "\n"
    "Opens a chess board to play against a person or a UCI engine, or to watch two engines play.\n"
    "\n"
    "  --version  print version and build number, and end\n"
    "  --help     print this text, and end\n"
    "\n"
    "Qt's own options, such as -platform and -display, work as well.\n";

/// What the command line asks for without a window; null to open one. Needs no display.
const char* commandLineAnswer(int argc, char** argv) {
    for (int index = 1; index < argc; ++index) {
        if (std::strcmp(argv[index], "--version") == 0) return versionText;
        if (std::strcmp(argv[index], "--help") == 0) return helpText;
    }
    return nullptr;
}

constexpr std::chrono::milliseconds longestHold{1000};
constexpr std::chrono::milliseconds toTheScreen{50};  // what a display server may need for a painted window

int run(QApplication& application, const UpdateParts& parts) {
    startDrawingFirstIcons(application.devicePixelRatio());
    PosixQuitSignals quitSignals;
    QObject::connect(&quitSignals, &PosixQuitSignals::received, &application, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    // Outlives everything that launches: its end is the end of every engine.
    PosixProcessLauncher launcher;
    const QtFileTests fileTests{};
    QtFileStore fileStore;
    QtFileDialogs dialogs;
    QtPasteboard pasteboard;
    QtTimeSource time;
#ifdef __APPLE__
    MacDefaultsStore defaults;
    const MacSystemSettings system{};
    MacSoundPlayer soundPlayer;
#else
    LinuxDefaultsStore defaults;
    const LinuxSystemSettings system{};
    LinuxSoundPlayer soundPlayer(LinuxSoundPlayer::defaultFolder());
#endif

    Theme theme;
    Theme::registerShared(&theme);
    LocalizationManager loc(defaults, system);
    LocalizationManager::registerShared(&loc);
    SoundManager sounds(soundPlayer);
    SoundManager::registerShared(&sounds);
    EngineManager engines({defaults, fileTests, system, launcher, dialogs});
    EngineManager::registerShared(&engines);
    GameManager game(time, engines, sounds, [&](const EngineConfiguration& config) {
        return std::make_unique<UCIEngineProcess>(config, launcher, fileTests);
    });
    GameManager::registerShared(&game);
    AutomatchManager automatch(time, game, engines, sounds);
    AutomatchManager::registerShared(&automatch);
    PGNExporter exporter(dialogs, fileStore, pasteboard);

    // Updates. Nothing here touches the network or a file before it is asked to.
    PosixToolRunner tools;
    PosixDetachedStarter starter;
    const BundleInfo builtIn{QStringLiteral(ORLIX_BUNDLE_IDENTIFIER), QStringLiteral(ORLIX_VERSION),
                             QStringLiteral(ORLIX_BUILD)};
    UpdateService updateService({*parts.transport, tools, parts.diskImageTool, *parts.signatures, starter,
                                 fileTests, defaults,
                                 runningApplication(QCoreApplication::applicationDirPath(), builtIn),
                                 userFolders(), parts.feedAddress});
    UpdateService::registerShared(&updateService);
    UpdateController updates(updateService, time, &QCoreApplication::quit);
    UpdateController::registerShared(&updates);

    LeanMemory memory;
    QObject::connect(&game, &GameManager::enginesChanged, &memory, &LeanMemory::returnSoon);
    // The window gets the keyboard back when a dialog or a list over it has closed.
    QObject::connect(&application, &QGuiApplication::focusWindowChanged, &memory, &LeanMemory::returnSoon);

    AppDelegate delegate(updates);
    MainWindow window(theme);
#ifndef __APPLE__
    provideWindowMemory(window);
#endif
    window.fill({game, loc, engines, automatch, exporter, theme, system, time}, updates);
    dialogs.setWindow(&window);
    // The first game's engines start when the first picture has come to the screen, which would have to share
    // the processor with them. A window that opens minimized has none for now.
    time.hold();
    const auto releaseAfter = [&](std::chrono::milliseconds delay) {
        QTimer::singleShot(delay, &window, [&time] { time.release(); });
    };
    QObject::connect(&window, &MainWindow::firstPainted, &window, [=] { releaseAfter(toTheScreen); });
    releaseAfter(longestHold);
    delegate.applicationDidFinishLaunching(window);
    return QApplication::exec();
}

}  // namespace

namespace orlix {

int runApplication(int argc, char** argv, UpdateParts (*makeUpdateParts)()) {
    if (const char* answer = commandLineAnswer(argc, argv)) {
        return std::fputs(answer, stdout) < 0 ? 1 : 0;
    }
#ifndef __APPLE__
    startNoSessionBus();
    std::future<GenericFamilies> fontConfiguration = startReadingFontConfiguration();
#endif
    // One look everywhere; named before the application exists, so that no system style is loaded first.
    QApplication::setStyle(new LeanStyle);
#ifndef __APPLE__
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeMenuBar, !LinuxSystemSettings::desktopMayShowMenus());
#endif
    QApplication application(argc, argv);
#ifndef __APPLE__
    connectToSessionBusAhead();
    const GenericFamilies families = fontConfiguration.get();
    Theme::nameGenericFamilies(QString::fromStdString(families.sansSerif),
                               QString::fromStdString(families.monospace));
#endif
    QCoreApplication::setApplicationName(QStringLiteral("velmorandix-orlix"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ORLIX_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("velmorandix-orlix"));
    return run(application, makeUpdateParts());
}

}  // namespace orlix
