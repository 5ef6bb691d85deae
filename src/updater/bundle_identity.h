// What an application's bundle says about itself.
#pragma once

#include <string>

#include "platform/file_operations.h"
#include "updater/fault.h"

namespace orlix {

struct BundleIdentity {
    std::string identifier;
    std::string version;
    std::string build;
    std::string program;  ///< the name of its executable file; empty when what it names is no plain name

    bool operator==(const BundleIdentity&) const = default;
};

/// Reads Contents/Info.plist of an open bundle without following links. A property that is missing or is not
/// text reads as empty.
Fault readBundleIdentity(FileOperations& files, int bundle, BundleIdentity& result);

}  // namespace orlix
