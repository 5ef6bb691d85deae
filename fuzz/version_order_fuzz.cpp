// The order of three version texts, parted by line breaks, is total, antisymmetric and transitive, and does
// not mind what is trimmed.
#include <QString>
#include <QStringList>

#include "fuzz_target.h"
#include "update/version_order.h"

using orlix::compareVersions;
using orlix::VersionOrder;
using orlix::fuzz::require;

namespace {

VersionOrder reversed(VersionOrder order) {
    if (order == VersionOrder::same) return order;
    return order == VersionOrder::ascending ? VersionOrder::descending : VersionOrder::ascending;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QStringList lines = text.split(QLatin1Char('\n'));
    const QString a = lines.value(0);
    const QString b = lines.value(1);
    const QString c = lines.value(2);
    for (const QString& each : {a, b, c}) {
        require(compareVersions(each, each) == VersionOrder::same, "a version is the same as itself");
        require(
            compareVersions(each, QStringLiteral("v ") + each + QStringLiteral(" V")) == VersionOrder::same,
            "the letter and blanks at the ends do not count");
        for (const qint64 part : orlix::versionParts(each))
            require(part >= 0, "no part is negative");
    }
    require(compareVersions(a, b) == reversed(compareVersions(b, a)), "the order is antisymmetric");
    const VersionOrder ab = compareVersions(a, b);
    const VersionOrder bc = compareVersions(b, c);
    const VersionOrder ac = compareVersions(a, c);
    if (ab == bc) require(ac == ab, "the order is transitive");
    if (ab == VersionOrder::same) require(ac == bc, "versions that are the same compare the same");
    if (bc == VersionOrder::same) require(ac == ab, "on both sides");
    return 0;
}
