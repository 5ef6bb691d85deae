#include "platform/macos/mac_defaults_store.h"

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <type_traits>

namespace orlix {
namespace {

struct Release {
    void operator()(CFTypeRef object) const { CFRelease(object); }
};
/// A Core Foundation object that the caller has to release.
using Owned = std::unique_ptr<std::remove_pointer_t<CFTypeRef>, Release>;

Owned storedValue(const QString& key) {
    const Owned name(key.toCFString());
    return Owned(
        CFPreferencesCopyAppValue(static_cast<CFStringRef>(name.get()), kCFPreferencesCurrentApplication));
}

void store(const QString& key, CFPropertyListRef value) {
    const Owned name(key.toCFString());
    CFPreferencesSetAppValue(static_cast<CFStringRef>(name.get()), value, kCFPreferencesCurrentApplication);
    CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication);
}

}  // namespace

std::optional<QByteArray> MacDefaultsStore::data(const QString& key) const {
    const Owned value = storedValue(key);
    if (!value || CFGetTypeID(value.get()) != CFDataGetTypeID()) return std::nullopt;
    return QByteArray::fromCFData(static_cast<CFDataRef>(value.get()));
}

std::optional<QString> MacDefaultsStore::string(const QString& key) const {
    const Owned value = storedValue(key);
    if (!value || CFGetTypeID(value.get()) != CFStringGetTypeID()) return std::nullopt;
    return QString::fromCFString(static_cast<CFStringRef>(value.get()));
}

std::optional<bool> MacDefaultsStore::boolean(const QString& key) const {
    const Owned value = storedValue(key);
    if (!value) return std::nullopt;
    if (CFGetTypeID(value.get()) == CFBooleanGetTypeID())
        return CFBooleanGetValue(static_cast<CFBooleanRef>(value.get())) != 0;
    if (CFGetTypeID(value.get()) != CFNumberGetTypeID()) return std::nullopt;
    double number = -1;
    CFNumberGetValue(static_cast<CFNumberRef>(value.get()), kCFNumberDoubleType, &number);
    if (number != 0 && number != 1) return std::nullopt;
    return number == 1;
}

void MacDefaultsStore::setData(const QString& key, const QByteArray& value) {
    const Owned data(value.toCFData());
    store(key, data.get());
}

void MacDefaultsStore::setString(const QString& key, const QString& value) {
    const Owned text(value.toCFString());
    store(key, text.get());
}

void MacDefaultsStore::setBoolean(const QString& key, bool value) {
    store(key, value ? kCFBooleanTrue : kCFBooleanFalse);
}

}  // namespace orlix
