#include "updater/bundle_identity.h"

#include <QByteArray>

#include "update/bundle_info.h"
#include "update/property_list.h"
#include "updater/file_reading.h"
#include "updater/paths.h"

namespace orlix {
namespace {

std::string textOr(const std::optional<QString>& text, const char* otherwise) {
    return text ? text->toStdString() : otherwise;
}

}  // namespace

Fault readBundleIdentity(FileOperations& files, int bundle, BundleIdentity& result) {
    static const std::string what = "the properties of an application could not be read";
    UniqueFd contents;
    std::string bytes;
    FileStatus status;
    int error = files.openFolder(bundle, "Contents", contents);
    if (error == 0)
        error = readSmallFile(files, contents.get(), "Info.plist", largestPropertyList, bytes, status);
    if (error != 0) return faultOf(what, error);
    const auto info = bundleInfoFromPropertyList(QByteArray::fromStdString(bytes));
    if (!info) return what;
    result = {textOr(info->identifier, ""), textOr(info->shortVersion, "0.0.0"), textOr(info->version, "0"),
              textOr(info->executable, "")};
    if (!isPlainName(result.program)) result.program.clear();
    return std::nullopt;
}

}  // namespace orlix
