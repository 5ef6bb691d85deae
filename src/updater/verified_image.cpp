#include "updater/verified_image.h"

#include <vector>

#include "platform/sha256.h"
#include "updater/fault.h"

namespace orlix {
namespace {

constexpr std::int64_t largestImage = std::int64_t{4} << 30;
constexpr std::size_t chunkSize = 1 << 20;

}  // namespace

Fault VerifiedImage::open(int folder, const std::string& name, const std::string& digest) {
    static const std::string what = "the disk image could not be read: ";
    if (const int error = files_.openFile(folder, name, file_)) return what + errorText(error);
    if (const int error = files_.status(file_.get(), status_)) return what + errorText(error);
    if (status_.kind != FileKind::regular) return what + "it is no file";
    if (status_.size < 1 || status_.size > largestImage) return "the disk image has the wrong size";

    Sha256 sum;
    std::vector<char> chunk(chunkSize);
    std::int64_t total = 0;
    for (;;) {
        std::size_t count = 0;
        if (const int error = files_.read(file_.get(), chunk.data(), chunk.size(), count))
            return what + errorText(error);
        if (count == 0) break;
        sum.add(chunk.data(), count);
        total += static_cast<std::int64_t>(count);
        if (total > status_.size) break;
    }
    if (total != status_.size) return "the disk image has the wrong size";
    if (sum.finish() != digest) return "the disk image failed SHA-256 verification";
    return std::nullopt;
}

bool VerifiedImage::isUnchanged(int folder, const std::string& name) const {
    FileStatus named;
    FileStatus opened;
    return files_.statusOf(folder, name, named) == 0 && files_.status(file_.get(), opened) == 0 &&
           named == status_ && opened == status_;
}

}  // namespace orlix
