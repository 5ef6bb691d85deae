// All checks of what is inside a downloaded image. Blocks: worker threads only.
#pragma once

#include <QString>

namespace orlix {

class CodeSignatureReader;
class DiskImages;
struct RunningApplication;
struct UpdateInfo;

/// Mounts the image and looks whether its application is the release that the feed describes, signed by those
/// who signed the running one. The image is detached again whatever happens.
/// @throws NativeUpdateError, or SystemError when the disk-image tool cannot be started.
void preflightDiskImage(const QString& imagePath, const UpdateInfo& info,
                        const RunningApplication& application, DiskImages& images,
                        CodeSignatureReader& signatures);

}  // namespace orlix
