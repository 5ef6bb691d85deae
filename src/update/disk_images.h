// Attaches and detaches disk images with the system's tool. Blocks while the tool runs: worker threads only.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <string>
#include <vector>

namespace orlix {

class ToolRunner;

/// An attached image.
struct MountedImage {
    QString mountPath;
    std::optional<QString> device;  ///< as the tool calls it

    bool operator==(const MountedImage&) const = default;
};

class DiskImages {
  public:
    /// The system's own tool is at `systemTool`.
    DiskImages(ToolRunner& runner, std::string toolPath) : runner_(runner), tool_(std::move(toolPath)) {}

    static constexpr const char* systemTool = "/usr/bin/hdiutil";

    /// Read-only and without showing it to the user.
    /// @throws NativeUpdateError invalidDiskImage with the tool's own words; SystemError when it cannot be
    /// started.
    MountedImage attach(const QString& imagePath);
    /// @throws NativeUpdateError invalidDiskImage; SystemError when the tool cannot be started.
    void detach(const MountedImage& image);
    /// Also when somebody holds on to the volume.
    /// @throws as `detach`.
    void detachByForce(const MountedImage& image);

    /// What the tool's property list says is mounted: of the entities with a mount point the last one.
    static std::optional<MountedImage> mountedImage(const QByteArray& propertyList);

  private:
    void detach(const MountedImage& image, const std::vector<std::string>& options);

    ToolRunner& runner_;
    std::string tool_;
};

}  // namespace orlix
