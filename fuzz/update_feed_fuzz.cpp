// Any bytes are either a release or refused with a sentence; what was read is written and read back the same.
#include <QByteArray>
#include <QString>

#include "fuzz_target.h"
#include "update/update_info.h"
#include "update/update_places.h"

using orlix::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray feed(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QString error;
    const auto info = orlix::UpdateInfo::fromJson(feed, error);
    require(info.has_value() == error.isEmpty(), "a refusal has its sentence, and nothing else has one");
    if (!info) return 0;
    require(orlix::UpdateInfo::fromJson(info->toJson(), error) == info, "a written release reads back");
    const QString folder = QStringLiteral("/caches");
    const QString below = QStringLiteral("/caches/com.dovu.velmorandix/Updates/");
    const QString place = orlix::updateDirectory(folder, *info);
    require(place.startsWith(below), "a release has its folder below the one of all updates");
    require(!place.mid(below.size()).contains(QLatin1Char('/')), "and no deeper");
    require(!orlix::imageFileName(*info).contains(QLatin1Char('/')), "an image's name is no path");
    if (!info->supportsAutomaticInstallation()) return 0;
    require(info->build && info->size && *info->size >= 1 && info->sha256 && info->sha256->size() == 64,
            "what can be installed can be verified");
    return 0;
}
