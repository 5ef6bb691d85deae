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

struct FontConfiguration {
    /// Ready when everything is read. Wait for it before the first question about a font: a second reader
    /// does not wait, it reads everything again.
    std::future<void> isRead;
    std::future<GenericFamilies> families;  ///< some milliseconds later
};

/// Starts to read the font configuration on a thread of its own: some forty files of XML, which Qt would read
/// on the main thread when the first text is measured. To be called before the application object exists; it
/// takes over the environment's locale for that, as the application does.
FontConfiguration startReadingFontConfiguration();

}  // namespace orlix
