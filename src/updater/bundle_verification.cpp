#include "updater/bundle_verification.h"

#include <algorithm>

#include "updater/bundle_identity.h"
#include "updater/paths.h"

namespace orlix {
namespace {

constexpr const char* moved = "the new application was moved while it was checked";

bool leadsTo(FileOperations& files, const std::string& folderPath, const std::string& name,
             const FileStatus& expected) {
    UniqueFd folder;
    FileStatus status;
    return openFolderPath(files, folderPath, folder) == 0 &&
           files.statusOf(folder.get(), name, status) == 0 && status.kind == FileKind::folder &&
           status.isSameFile(expected);
}

Fault signatureFault(CodeSignatureReader& signatures, const std::string& path,
                     const ExpectedBundle& expected) {
    SignatureInfo info;
    switch (signatures.read(path, developerRequirement(expected.identifier, expected.team), info)) {
        case SignatureFault::unreadable: return "the code signature could not be read";
        case SignatureFault::invalid: return "code signature validation failed";
        case SignatureFault::uninspectable: return "the signing identity could not be inspected";
        case SignatureFault::none: break;
    }
    // An absent team equals no other, not even an absent one.
    if (expected.team.empty() || info.identifier != expected.identifier ||
        info.teamIdentifier != expected.team)
        return "the Developer ID identity does not match the installed application";
    return std::nullopt;
}

}  // namespace

Fault verifyBundle(FileOperations& files, CodeSignatureReader& signatures, int folder,
                   const std::string& folderPath, const std::string& name, const ExpectedBundle& expected,
                   FileStatus& status) {
    UniqueFd bundle;
    int error = files.openFolder(folder, name, bundle);
    if (error == 0) error = files.status(bundle.get(), status);
    if (error != 0) return faultOf("the new application could not be opened", error);
    BundleIdentity identity;
    if (Fault fault = readBundleIdentity(files, bundle.get(), identity)) return fault;
    if (identity.identifier != expected.identifier) return "the new application has another identifier";
    if (identity.version != expected.version || identity.build != expected.build)
        return "version or build does not match the plan";
    if (!leadsTo(files, folderPath, name, status)) return moved;
    if (Fault fault = signatureFault(signatures, folderPath + '/' + name, expected)) return fault;
    if (!leadsTo(files, folderPath, name, status)) return moved;
    return std::nullopt;
}

// The two fields mark Apple's intermediate authority for Developer IDs and its leaf certificates.
std::string developerRequirement(const std::string& identifier, const std::string& team) {
    return "anchor apple generic and identifier \"" + identifier +
           "\" and certificate 1[field.1.2.840.113635.100.6.2.6] exists"
           " and certificate leaf[field.1.2.840.113635.100.6.1.13] exists"
           " and certificate leaf[subject.OU] = \"" +
           team + '"';
}

bool isFitForRequirement(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
               c == '-';
    });
}

}  // namespace orlix
