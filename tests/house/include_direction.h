// Which folder may use which: the rules over #include lines and over shared(), as functions of one file's
// text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orlix::house {

/// The faults of one source file, each as "<line number>: <why>"; empty when the file keeps the rules.
/// `path` is relative to src/, with slashes ("engine/engine_manager.cpp").
std::vector<std::string> directionFaults(std::string_view path, std::string_view text);

}  // namespace orlix::house
