#include "updater/command_line.h"

#include <charconv>

namespace orlix {
namespace {

// 0 for what is no process identifier.
pid_t processFrom(const std::string& text) {
    if (text.empty() || text.front() < '1' || text.front() > '9') return 0;
    pid_t id = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, id);
    return error == std::errc() && rest == end ? id : 0;
}

}  // namespace

std::optional<UpdaterCommand> parseCommandLine(const std::vector<std::string>& arguments) {
    if (arguments.size() != 4 || arguments[0] != "--plan" || arguments[2] != "--parent-pid")
        return std::nullopt;
    UpdaterCommand command{arguments[1], processFrom(arguments[3])};
    if (command.planPath.empty() || command.parent == 0) return std::nullopt;
    return command;
}

}  // namespace orlix
