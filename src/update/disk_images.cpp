#include "update/disk_images.h"

#include <QFile>
#include <QStringDecoder>
#include <algorithm>

#include "platform/tool_runner.h"
#include "update/property_list.h"
#include "update/update_error.h"

namespace orlix {
namespace {

std::string fileName(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

ToolRunner::Result run(ToolRunner& runner, const std::string& tool,
                       const std::vector<std::string>& arguments) {
    ToolRunner::Result result = runner.run(tool, arguments);
    if (result.startError != 0) throw SystemError::fromErrno(result.startError);
    return result;
}

QString errorText(const std::string& utf8) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder(QByteArrayView(utf8.data(), static_cast<qsizetype>(utf8.size())));
    return decoder.hasError() ? QStringLiteral("Could not mount image.") : text;
}

bool isDictionary(const QVariant& value) {
    return value.typeId() == QMetaType::QVariantMap;
}

bool isText(const QVariant& value) {
    return value.typeId() == QMetaType::QString;
}

}  // namespace

MountedImage DiskImages::attach(const QString& imagePath) {
    const ToolRunner::Result result =
        run(runner_, tool_, {"attach", "-readonly", "-nobrowse", "-plist", fileName(imagePath)});
    if (result.exitStatus == 0) {
        if (auto image = mountedImage(QByteArray::fromStdString(result.output))) return *image;
    }
    throw NativeUpdateError::invalidDiskImage(errorText(result.errors));
}

void DiskImages::detach(const MountedImage& image) {
    detach(image, {});
}

void DiskImages::detachByForce(const MountedImage& image) {
    detach(image, {"-force"});
}

void DiskImages::detach(const MountedImage& image, const std::vector<std::string>& options) {
    std::vector<std::string> arguments{"detach", fileName(image.device.value_or(image.mountPath))};
    arguments.insert(arguments.end(), options.begin(), options.end());
    if (run(runner_, tool_, arguments).exitStatus != 0)
        throw NativeUpdateError::invalidDiskImage(QStringLiteral("Could not detach image."));
}

std::optional<MountedImage> DiskImages::mountedImage(const QByteArray& propertyList) {
    const auto properties = readPropertyList(propertyList);
    if (!properties) return std::nullopt;
    const QVariant entities = properties->value(QStringLiteral("system-entities"));
    if (entities.typeId() != QMetaType::QVariantList) return std::nullopt;
    const QVariantList list = entities.toList();
    if (!std::all_of(list.begin(), list.end(), isDictionary)) return std::nullopt;
    for (auto entry = list.rbegin(); entry != list.rend(); ++entry) {
        const QVariantMap entity = entry->toMap();
        const QVariant mountPoint = entity.value(QStringLiteral("mount-point"));
        if (!isText(mountPoint)) continue;
        const QVariant device = entity.value(QStringLiteral("dev-entry"));
        return MountedImage{mountPoint.toString(),
                            isText(device) ? std::optional<QString>(device.toString()) : std::nullopt};
    }
    return std::nullopt;
}

}  // namespace orlix
