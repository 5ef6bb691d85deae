// Any bytes are either a result or none; what was read is written and read back the same.
#include <QByteArray>

#include "fuzz_target.h"
#include "update/update_install_result.h"

using orlix::UpdateInstallResult;
using orlix::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray json(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto result = UpdateInstallResult::fromJson(json);
    if (result)
        require(UpdateInstallResult::fromJson(result->toJson()) == result, "a written result reads back");
    return 0;
}
