#include "updater/seal_signatures.h"

#include <functional>
#include <optional>
#include <sstream>

#include "support/temporary_folder.h"

namespace orlix::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* sealMark = "\norlix program seal\n";

std::string digestOf(const std::string& bytes) {
    return std::to_string(std::hash<std::string>()(bytes));
}

std::optional<Seal> readProgramSeal(const fs::path& path) {
    const std::string bytes = readFile(path);
    const std::size_t at = bytes.rfind(sealMark);
    if (at == std::string::npos) return std::nullopt;
    std::istringstream stream(bytes.substr(at + std::string(sealMark).size()));
    Seal seal;
    std::string digest;
    if (!std::getline(stream, seal.identifier) || !std::getline(stream, seal.team) || !(stream >> digest) ||
        digest != digestOf(bytes.substr(0, at)))
        return std::nullopt;
    return seal;
}

}  // namespace

void sealProgram(const fs::path& path, const std::string& identifier, const std::string& team) {
    const std::string digest = digestOf(readFile(path));
    std::ofstream(path, std::ios::binary | std::ios::app) << sealMark << identifier << '\n'
                                                          << team << '\n'
                                                          << digest << '\n';
}

bool meetsRequirement(const Seal& seal, const std::string& requirement) {
    return requirement.find("identifier \"" + seal.identifier + '"') != std::string::npos &&
           requirement.find("[subject.OU] = \"" + seal.team + '"') != std::string::npos;
}

SignatureFault SealSignatures::read(const std::string& path, const std::string& requirement,
                                    SignatureInfo& result) {
    const bool isBundle = fs::is_directory(path);
    if (!isBundle && !fs::is_regular_file(path)) return SignatureFault::unreadable;
    const std::optional<Seal> seal = isBundle ? readSeal(path) : readProgramSeal(path);
    if (!seal) return SignatureFault::invalid;
    if (isBundle && !requirement.empty() && !meetsRequirement(*seal, requirement))
        return SignatureFault::invalid;
    result = {seal->identifier, seal->team.empty() ? std::nullopt : std::optional(seal->team)};
    return SignatureFault::none;
}

}  // namespace orlix::test
