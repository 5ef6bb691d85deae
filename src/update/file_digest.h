// The SHA-256 digest of a whole file, in constant memory. Blocks while it reads: worker threads only.
#pragma once

#include <QString>

namespace orlix {

/// Of the file at `path`, as 64 lower-case hexadecimal digits.
/// @throws SystemError when the file cannot be read.
QString sha256(const QString& path);

/// Of the open file `descriptor`, from where it stands to its end. Leaves it open.
/// @throws SystemError when it cannot be read.
QString sha256OfDescriptor(int descriptor);

}  // namespace orlix
