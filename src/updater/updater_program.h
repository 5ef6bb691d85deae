// The program between its command line and its exit status, for a main function that brings the seams.
#pragma once

#include <string>
#include <vector>

#include "updater/update_installation.h"

namespace orlix {

/// Exit statuses.
inline constexpr int updateInstalled = 0;
inline constexpr int updateFailed = 1;
inline constexpr int wrongCommandLine = 2;

/// Makes the process one that stands by itself: it keeps no volume busy by its working folder, and what ends
/// sessions (SIGHUP, SIGINT, SIGTERM) waits until the installation is over, so that none is left halfway.
void detachFromStarter();

/// What this program installs, with which tool, for which team, and where its results go. The seams outlive
/// the settings.
InstallationSettings usualSettings(const InstallationSeams& seams);

/// Does what `arguments`, the command line without the program's own name, ask for. A result is written in
/// every case; with another command line than the application's nothing is touched or started.
int runUpdater(const std::vector<std::string>& arguments, const InstallationSeams& seams,
               const InstallationSettings& settings);

}  // namespace orlix
