#include "updater/file_reading.h"

#include <array>
#include <cerrno>

namespace orlix {

int readSmallFile(FileOperations& files, int folder, const std::string& name, std::size_t limit,
                  std::string& contents, FileStatus& status) {
    UniqueFd file;
    if (const int error = files.openFile(folder, name, file)) return error;
    if (const int error = files.status(file.get(), status)) return error;
    if (status.kind != FileKind::regular) return EINVAL;
    contents.clear();
    std::array<char, 16 * 1024> buffer;
    for (;;) {
        std::size_t count = 0;
        if (const int error = files.read(file.get(), buffer.data(), buffer.size(), count)) return error;
        if (count == 0) return 0;
        contents.append(buffer.data(), count);
        if (contents.size() > limit) return EFBIG;
    }
}

}  // namespace orlix
