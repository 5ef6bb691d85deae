#include "platform/macos/mac_code_signature.h"

#include <CoreFoundation/CoreFoundation.h>
#include <Security/Security.h>

#include <vector>

namespace orlix {
namespace {

// Owns one reference to a Core Foundation object.
template <class Ref>
class Owned {
  public:
    Owned() = default;
    explicit Owned(Ref ref) : ref_(ref) {}
    ~Owned() {
        if (ref_ != nullptr) CFRelease(ref_);
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;

    Ref get() const { return ref_; }
    /// Where a function puts its result.
    Ref* out() { return &ref_; }

  private:
    Ref ref_ = nullptr;
};

std::optional<std::string> text(CFDictionaryRef dictionary, CFStringRef key) {
    const void* value = CFDictionaryGetValue(dictionary, key);
    if (value == nullptr || CFGetTypeID(value) != CFStringGetTypeID()) return std::nullopt;
    const auto string = static_cast<CFStringRef>(value);
    const CFIndex size =
        CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8) + 1;
    std::vector<char> bytes(static_cast<std::size_t>(size));
    if (!CFStringGetCString(string, bytes.data(), size, kCFStringEncodingUTF8)) return std::nullopt;
    return std::string(bytes.data());
}

bool makeRequirement(const std::string& source, Owned<SecRequirementRef>& requirement) {
    if (source.empty()) return true;
    const Owned<CFStringRef> string(
        CFStringCreateWithCString(kCFAllocatorDefault, source.c_str(), kCFStringEncodingUTF8));
    return string.get() != nullptr && SecRequirementCreateWithString(string.get(), kSecCSDefaultFlags,
                                                                     requirement.out()) == errSecSuccess;
}

}  // namespace

SignatureFault MacCodeSignature::read(const std::string& path, const std::string& requirement,
                                      SignatureInfo& result) {
    const Owned<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path.data()), static_cast<CFIndex>(path.size()),
        false));
    Owned<SecStaticCodeRef> code;
    if (url.get() == nullptr ||
        SecStaticCodeCreateWithPath(url.get(), kSecCSDefaultFlags, code.out()) != errSecSuccess)
        return SignatureFault::unreadable;

    Owned<SecRequirementRef> compiled;
    constexpr SecCSFlags strictly =
        kSecCSCheckAllArchitectures | kSecCSCheckNestedCode | kSecCSStrictValidate;
    if (!makeRequirement(requirement, compiled) ||
        SecStaticCodeCheckValidity(code.get(), strictly, compiled.get()) != errSecSuccess)
        return SignatureFault::invalid;

    Owned<CFDictionaryRef> information;
    if (SecCodeCopySigningInformation(code.get(), kSecCSSigningInformation, information.out()) !=
            errSecSuccess ||
        information.get() == nullptr || CFGetTypeID(information.get()) != CFDictionaryGetTypeID())
        return SignatureFault::uninspectable;
    result.identifier = text(information.get(), kSecCodeInfoIdentifier);
    result.teamIdentifier = text(information.get(), kSecCodeInfoTeamIdentifier);
    return SignatureFault::none;
}

}  // namespace orlix
