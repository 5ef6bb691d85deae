// The system's font configuration, read while Qt connects to the display.
#pragma once

#include <future>
#include <string>

namespace orlix {

/// The installed families behind the names that Qt asks for where no desktop names others; UTF-8, empty where
/// nothing is installed.
struct GenericFamilies {
    std::string sansSerif;
    std::string monospace;
};

/// Starts to read the font configuration on a thread of its own: some forty files of XML, which Qt would read
/// on the main thread when the first text is measured. To be called before the application object exists; it
/// takes over the environment's locale for that, as the application does. Wait for the result before the
/// first text: a second reader does not wait, it reads everything again.
std::future<GenericFamilies> startReadingFontConfiguration();

}  // namespace orlix
