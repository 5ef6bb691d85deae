#include "update/update_install_result.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "update/json_record.h"

namespace orlix {
namespace {

namespace key {
constexpr QLatin1String succeeded("succeeded");
constexpr QLatin1String message("message");
constexpr QLatin1String version("version");
}  // namespace key

}  // namespace

QByteArray UpdateInstallResult::toJson() const {
    const QJsonObject object{{key::succeeded, succeeded}, {key::message, message}, {key::version, version}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<UpdateInstallResult> UpdateInstallResult::fromJson(const QByteArray& json) {
    JsonRecord record(json, QStringLiteral("The install result"));
    UpdateInstallResult result;
    result.succeeded = record.boolean(key::succeeded);
    result.message = record.text(key::message);
    result.version = record.text(key::version);
    if (!record.error().isEmpty()) return std::nullopt;
    return result;
}

}  // namespace orlix
