#include "updater/checked_plan.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

#include "update/update_install_plan.h"
#include "updater/bundle_verification.h"
#include "updater/file_reading.h"
#include "updater/paths.h"

namespace orlix {
namespace {

constexpr std::size_t largestPlan = 64 * 1024;
constexpr std::size_t longestVersion = 100;
constexpr std::uint32_t othersMayWrite = 0022;
constexpr qsizetype fieldCount = 8;

bool isAll(const std::string& text, bool (*isAllowed)(char)) {
    return !text.empty() && std::all_of(text.begin(), text.end(), isAllowed);
}

bool isDigest(const std::string& text) {
    return text.size() == 64 &&
           isAll(text, [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); });
}

// Feeds have them in all shapes; what a user gets to read must be one short line.
bool isVersion(const std::string& text) {
    return text.size() <= longestVersion && isAll(text, [](char c) {
               const auto code = static_cast<unsigned char>(c);
               return code >= 0x20 && code != 0x7f;
           });
}

bool isApplicationPath(const std::string& path) {
    static const std::string suffix = ".app";
    const auto names = pathNames(path);
    return names && names->size() > 1 && names->back().size() > suffix.size() &&
           names->back().compare(names->back().size() - suffix.size(), suffix.size(), suffix) == 0;
}

// Whether the folder of a file is the open one; the path's folders may be links.
bool liesIn(FileOperations& files, int folder, const std::string& path) {
    const auto names = pathNames(path);
    if (!names || names->size() < 2) return false;
    UniqueFd other;
    FileStatus status;
    FileStatus otherStatus;
    return files.openKnownFolder(folderOf(path), other) == 0 && files.status(folder, status) == 0 &&
           files.status(other.get(), otherStatus) == 0 && status.isSameFile(otherStatus);
}

Fault refused(const std::string& why) {
    return "the install plan cannot be used: " + why;
}

Fault readText(FileOperations& files, const std::string& path, CheckedPlan& plan, std::string& text) {
    if (const auto names = pathNames(path); !names || names->size() < 2)
        return refused("its path is not plain");
    plan.folderPath = folderOf(path);
    FileStatus status;
    int error = openFolderPath(files, plan.folderPath, plan.folder);
    if (error == 0) error = readSmallFile(files, plan.folder.get(), nameOf(path), largestPlan, text, status);
    if (error != 0) return refused(errorText(error));
    if (status.owner != files.user()) return refused("it belongs to another user");
    if ((status.mode & othersMayWrite) != 0) return refused("other users may write to it");
    if (status.linkCount != 1) return refused("it has a second name");
    return std::nullopt;
}

// One object with the fields of a plan, all of them text, and nothing else.
std::optional<UpdateInstallPlan> parse(const std::string& text) {
    const QByteArray json = QByteArray::fromStdString(text);
    if (QJsonDocument::fromJson(json).object().size() != fieldCount) return std::nullopt;
    QString ignored;
    return UpdateInstallPlan::fromJson(json, ignored);
}

Fault check(const UpdateInstallPlan& fields, const PlanPolicy& policy, CheckedPlan& plan) {
    plan.targetPath = QFile::encodeName(fields.targetAppPath).toStdString();
    if (!isApplicationPath(plan.targetPath)) return refused("targetAppPath");
    if (fields.expectedBundleIdentifier.toStdString() != policy.bundleIdentifier)
        return refused("expectedBundleIdentifier");
    plan.team = fields.expectedTeamIdentifier.toStdString();
    if (plan.team != policy.ownTeam) return refused("expectedTeamIdentifier");
    plan.version = fields.expectedVersion.toStdString();
    if (!isVersion(plan.version)) return refused("expectedVersion");
    plan.build = fields.expectedBuild.toStdString();
    if (!isVersion(plan.build)) return refused("expectedBuild");
    plan.digest = fields.expectedSHA256.toStdString();
    if (!isDigest(plan.digest)) return refused("expectedSHA256");
    if (QFile::encodeName(fields.statusPath).toStdString() != policy.resultPath) return refused("statusPath");
    return std::nullopt;
}

}  // namespace

Fault readPlan(FileOperations& files, const std::string& path, const PlanPolicy& policy,
               CheckedPlan& result) {
    if (!isFitForRequirement(policy.ownTeam))
        return "automatic updates require a Developer ID signed application";
    CheckedPlan plan;
    std::string text;
    if (Fault fault = readText(files, path, plan, text)) return fault;
    const auto fields = parse(text);
    if (!fields) return refused("it does not have the fields of a plan");
    const std::string image = QFile::encodeName(fields->dmgPath).toStdString();
    if (!liesIn(files, plan.folder.get(), image)) return refused("dmgPath");
    plan.imageName = nameOf(image);
    if (Fault fault = check(*fields, policy, plan)) return fault;
    result = std::move(plan);
    return std::nullopt;
}

}  // namespace orlix
