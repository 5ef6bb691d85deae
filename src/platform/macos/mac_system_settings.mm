#include "platform/macos/mac_system_settings.h"

#import <AppKit/AppKit.h>
#include <CoreFoundation/CoreFoundation.h>

namespace orlix {

QStringList MacSystemSettings::preferredLanguages() const {
    const CFArrayRef languages = CFLocaleCopyPreferredLanguages();
    if (!languages) return {};
    QStringList tags;
    for (CFIndex index = 0; index < CFArrayGetCount(languages); ++index)
        tags.append(
            QString::fromCFString(static_cast<CFStringRef>(CFArrayGetValueAtIndex(languages, index))));
    CFRelease(languages);
    return tags;
}

bool MacSystemSettings::prefersReducedMotion() const {
    return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
}

QStringList MacSystemSettings::additionalEnginePaths() const {
    return {};
}

}  // namespace orlix
