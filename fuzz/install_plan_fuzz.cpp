// Any bytes are either a plan or refused with a sentence; what was read is written and read back the same.
#include <QByteArray>
#include <QString>

#include "fuzz_target.h"
#include "update/update_install_plan.h"

using orlix::UpdateInstallPlan;
using orlix::fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray json(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    QString error;
    const auto plan = UpdateInstallPlan::fromJson(json, error);
    require(plan.has_value() == error.isEmpty(), "a refusal has its sentence, and nothing else has one");
    if (plan)
        require(UpdateInstallPlan::fromJson(plan->toJson(), error) == plan, "a written plan reads back");
    return 0;
}
