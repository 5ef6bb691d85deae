// Any bytes are either a harmless dictionary or nothing, at a cost that does not run away.
#include <QByteArray>

#include "fuzz_target.h"
#include "update/bundle_info.h"
#include "update/disk_images.h"
#include "update/property_list.h"
#include "update/property_list_limits.h"

using orlix::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const bool isDictionary = orlix::readPropertyList(bytes).has_value();
    require(!isDictionary || orlix::isHarmlessPropertyList(bytes), "only harmless lists are read");
    require(orlix::bundleInfoFromPropertyList(bytes).has_value() == isDictionary,
            "a bundle is any dictionary");
    require(isDictionary || !orlix::DiskImages::mountedImage(bytes), "an answer of the tool is a dictionary");
    return 0;
}
