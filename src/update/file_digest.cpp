#include "update/file_digest.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <cerrno>
#include <vector>

#include "platform/posix/unique_fd.h"
#include "platform/sha256.h"
#include "update/update_error.h"

namespace orlix {
namespace {

constexpr std::size_t chunkSize = 1024 * 1024;  // bytes

// 0 at the end of the file.
std::size_t readChunk(int descriptor, std::vector<char>& chunk) {
    for (;;) {
        const ssize_t count = read(descriptor, chunk.data(), chunk.size());
        if (count >= 0) return static_cast<std::size_t>(count);
        if (errno != EINTR) throw SystemError::fromErrno(errno);
    }
}

}  // namespace

QString sha256(const QString& path, const std::atomic<bool>* isCancelled) {
    const UniqueFd file(open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC));
    if (!file) throw SystemError::fromErrno(errno);
    return sha256OfDescriptor(file.get(), isCancelled);
}

QString sha256OfDescriptor(int descriptor, const std::atomic<bool>* isCancelled) {
    Sha256 digest;
    std::vector<char> chunk(chunkSize);
    while (const std::size_t count = readChunk(descriptor, chunk)) {
        if (isCancelled != nullptr && *isCancelled) throw SystemError::fromErrno(ECANCELED);
        digest.add(chunk.data(), count);
    }
    return QString::fromStdString(digest.finish());
}

}  // namespace orlix
