// The command line by which the application starts this program.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <vector>

namespace orlix {

struct UpdaterCommand {
    std::string planPath;
    pid_t parent = 0;  ///< the process to wait for; at least 1

    bool operator==(const UpdaterCommand&) const = default;
};

/// `arguments` without the program's own name: "--plan", a path, "--parent-pid", a decimal number without
/// sign, blanks and leading zeros, in this order and nothing else. Nothing for any other command line.
std::optional<UpdaterCommand> parseCommandLine(const std::vector<std::string>& arguments);

}  // namespace orlix
