#include "update/update_install_plan.h"

#include <QJsonDocument>
#include <QJsonObject>

#include "update/json_record.h"

namespace orlix {
namespace {

struct Field {
    const char* key;
    QString UpdateInstallPlan::*member;
};

constexpr Field fields[] = {
    {"dmgPath", &UpdateInstallPlan::dmgPath},
    {"targetAppPath", &UpdateInstallPlan::targetAppPath},
    {"expectedBundleIdentifier", &UpdateInstallPlan::expectedBundleIdentifier},
    {"expectedTeamIdentifier", &UpdateInstallPlan::expectedTeamIdentifier},
    {"expectedVersion", &UpdateInstallPlan::expectedVersion},
    {"expectedBuild", &UpdateInstallPlan::expectedBuild},
    {"expectedSHA256", &UpdateInstallPlan::expectedSHA256},
    {"statusPath", &UpdateInstallPlan::statusPath},
};

}  // namespace

QByteArray UpdateInstallPlan::toJson() const {
    QJsonObject object;
    for (const Field& field : fields)
        object.insert(QLatin1String(field.key), this->*field.member);
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<UpdateInstallPlan> UpdateInstallPlan::fromJson(const QByteArray& json, QString& error) {
    JsonRecord record(json, QStringLiteral("The install plan"));
    UpdateInstallPlan plan;
    for (const Field& field : fields)
        plan.*field.member = record.text(QLatin1String(field.key));
    error = record.error();
    if (!error.isEmpty()) return std::nullopt;
    return plan;
}

}  // namespace orlix
