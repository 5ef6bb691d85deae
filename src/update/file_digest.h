// The SHA-256 digest of a whole file, in constant memory. Blocks while it reads: worker threads only.
#pragma once

#include <QString>
#include <atomic>

namespace orlix {

/// Of the file at `path`, as 64 lower-case hexadecimal digits.
/// @throws SystemError when the file cannot be read, or when the flag became true in the meantime.
QString sha256(const QString& path, const std::atomic<bool>* isCancelled = nullptr);

/// Of the open file `descriptor`, from where it stands to its end. Leaves it open.
/// @throws SystemError as above.
QString sha256OfDescriptor(int descriptor, const std::atomic<bool>* isCancelled = nullptr);

}  // namespace orlix
