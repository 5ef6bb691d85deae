// Applications as folders, with a seal in the place of a signature: it names identifier and team and holds a
// digest of everything else, so a bundle that is incomplete or was touched is found out. Standard C++ only.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace orlix::test {

struct BundleSample {
    std::string identifier = "com.dovu.velmorandix";
    std::string version = "1.0.0";
    std::string build = "1";
    std::string team = "TEAM123456";
    bool isSmall = false;  ///< without framework and resources
};

/// Name of the program in every sample.
inline constexpr const char* sampleProgram = "Velmorandix Orlix";

/// Makes an application at `path`: property list, a program, a link, a framework with its links, resources,
/// the seal.
void makeBundle(const std::filesystem::path& path, const BundleSample& sample);

/// Seals what is in the bundle now.
void sealBundle(const std::filesystem::path& path, const std::string& identifier, const std::string& team);

struct Seal {
    std::string identifier;
    std::string team;
};

/// The bundle's seal when everything in it is as it was sealed.
std::optional<Seal> readSeal(const std::filesystem::path& path);

/// A digest of names, kinds, permissions, destinations of links and contents of everything below `path`.
std::uint64_t treeDigest(const std::filesystem::path& path, const std::filesystem::path& without = {});

}  // namespace orlix::test
