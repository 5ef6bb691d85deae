#include "update/update_info.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

#include "update/json_record.h"

namespace orlix {
namespace {

namespace key {
constexpr QLatin1String version("version");
constexpr QLatin1String build("build");
constexpr QLatin1String size("size");
constexpr QLatin1String sha256("sha256");
constexpr QLatin1String downloadUrl("download_url");
constexpr QLatin1String releaseNotes("release_notes");
constexpr QLatin1String publishedAt("published_at");
constexpr QLatin1String minimumMacOS("minimum_macos");
}  // namespace key

QUrl requiredUrl(JsonRecord& record, QLatin1String name) {
    QUrl url(record.text(name), QUrl::StrictMode);
    if (url.isEmpty() || !url.isValid())
        record.fail(QStringLiteral("has no valid URL under \"") + name + QStringLiteral("\"."));
    return url;
}

bool isHexadecimal(QChar c) {
    return (c >= QLatin1Char('0') && c <= QLatin1Char('9')) ||
           (c >= QLatin1Char('a') && c <= QLatin1Char('f')) ||
           (c >= QLatin1Char('A') && c <= QLatin1Char('F'));
}

}  // namespace

std::optional<UpdateInfo> UpdateInfo::fromJson(const QByteArray& json, QString& error) {
    JsonRecord record(json, QStringLiteral("The update feed"));
    UpdateInfo info;
    info.version = record.text(key::version);
    info.build = record.optionalText(key::build);
    info.size = record.optionalInteger(key::size);
    info.sha256 = record.optionalText(key::sha256);
    info.downloadURL = requiredUrl(record, key::downloadUrl);
    info.releaseNotes = record.optionalText(key::releaseNotes);
    info.publishedAt = record.optionalText(key::publishedAt);
    info.minimumMacOS = record.optionalText(key::minimumMacOS);
    error = record.error();
    if (!error.isEmpty()) return std::nullopt;
    return info;
}

QByteArray UpdateInfo::toJson() const {
    QJsonObject object{{key::version, version},
                       {key::downloadUrl, QString::fromUtf8(downloadURL.toEncoded())}};
    const auto insert = [&](QLatin1String name, const auto& value) {
        if (value) object.insert(name, *value);
    };
    insert(key::build, build);
    insert(key::size, size);
    insert(key::sha256, sha256);
    insert(key::releaseNotes, releaseNotes);
    insert(key::publishedAt, publishedAt);
    insert(key::minimumMacOS, minimumMacOS);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

bool UpdateInfo::supportsAutomaticInstallation() const {
    constexpr qsizetype digestLength = 64;
    return build && !build->isEmpty() && size && *size >= 1 && sha256 && sha256->size() == digestLength &&
           std::all_of(sha256->cbegin(), sha256->cend(), isHexadecimal);
}

}  // namespace orlix
