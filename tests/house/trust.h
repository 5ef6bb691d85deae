// What an update trusts is fixed when the program is built: no argument, no variable of the environment and
// no setting names the host of the feed, who vouches for a server, or a tool. The rules as functions of one
// file's text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orlix::house {

/// Whether the rules are about the file. `path` is relative to src/, with slashes.
bool isTrusted(std::string_view path);

/// The faults of one source file, each as "<line number>: <why>"; empty when the file keeps the rules, or
/// when they are not about it.
std::vector<std::string> trustFaults(std::string_view path, std::string_view text);

}  // namespace orlix::house
