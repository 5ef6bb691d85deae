// A disk image that is attached while the object lives.
#pragma once

#include <string>

#include "platform/tool_runner.h"
#include "update/disk_images.h"
#include "updater/fault.h"

namespace orlix {

class ImageAttachment {
  public:
    ImageAttachment(ToolRunner& tools, const std::string& toolPath) : images_(tools, toolPath) {}
    /// Detaches, by force when somebody holds on to the volume. An image that stays attached all the same
    /// does no harm: what is needed of it has been copied or never will be.
    ~ImageAttachment();
    ImageAttachment(const ImageAttachment&) = delete;
    ImageAttachment& operator=(const ImageAttachment&) = delete;

    /// Read-only and without showing it to the user.
    Fault attach(const std::string& imagePath);

    /// The path of the application with this identifier on the volume, by the application's own search.
    Fault findApplication(const std::string& identifier, std::string& path) const;

  private:
    DiskImages images_;
    std::optional<MountedImage> image_;
};

}  // namespace orlix
