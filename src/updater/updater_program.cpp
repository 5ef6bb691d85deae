#include "updater/updater_program.h"

#include <signal.h>
#include <unistd.h>

#include <QFile>
#include <utility>

#include "update/disk_images.h"
#include "update/update_places.h"
#include "update/user_folders.h"
#include "updater/command_line.h"
#include "updater/own_team.h"
#include "updater/paths.h"

namespace orlix {
namespace {

std::string native(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

// The folders below the one that the system names, and the file's name.
ResultPlace usualResultPlace() {
    ResultPlace place{native(userFolders().applicationSupport), {}, {}};
    if (auto names = pathNames(native(installStatusPath(QString())))) {
        place.name = names->back();
        names->pop_back();
        place.folders = std::move(*names);
    }
    return place;
}

}  // namespace

void detachFromStarter() {
    [[maybe_unused]] const int error = chdir("/");
    sigset_t deferred;
    sigemptyset(&deferred);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM})
        sigaddset(&deferred, signal);
    sigprocmask(SIG_BLOCK, &deferred, nullptr);
}

InstallationSettings usualSettings(const InstallationSeams& seams) {
    InstallationSettings settings;
    settings.replacement.bundleIdentifier = defaultBundleIdentifier().toStdString();
    settings.replacement.imageTool = DiskImages::systemTool;
    settings.ownTeam = [&processes = seams.processes, &signatures = seams.signatures] {
        return orlix::ownTeam(processes, signatures);
    };
    settings.resultPlace = usualResultPlace();
    return settings;
}

int runUpdater(const std::vector<std::string>& arguments, const InstallationSeams& seams,
               const InstallationSettings& settings) {
    UpdateInstallation installation(seams, settings);
    const auto command = parseCommandLine(arguments);
    if (!command) {
        installation.refuse("the updater was not started by the application");
        return wrongCommandLine;
    }
    return installation.run(command->planPath, command->parent) == UpdateInstallation::Ending::installed
               ? updateInstalled
               : updateFailed;
}

}  // namespace orlix
