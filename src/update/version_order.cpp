#include "update/version_order.h"

#include <algorithm>
#include <limits>

namespace orlix {
namespace {

bool isTrimmed(QChar c) {
    return c == QLatin1Char('v') || c == QLatin1Char('V') || c == QLatin1Char(' ');
}

QStringView trimmedVersion(QStringView text) {
    while (!text.isEmpty() && isTrimmed(text.front()))
        text = text.mid(1);
    while (!text.isEmpty() && isTrimmed(text.back()))
        text.chop(1);
    return text;
}

// The leading run takes every numeric character, also those of other scripts and fractions, but only the
// digits 0 to 9 make an integer: a run with any other one in it counts as 0.
qint64 leadingNumber(QStringView piece) {
    constexpr qint64 largest = std::numeric_limits<qint64>::max();
    qint64 number = 0;
    for (const char32_t c : piece.toUcs4()) {
        if (!QChar::isNumber(c)) break;
        if (c < U'0' || c > U'9') return 0;
        const qint64 digit = static_cast<qint64>(c - U'0');
        if (number > (largest - digit) / 10) return 0;
        number = number * 10 + digit;
    }
    return number;
}

}  // namespace

QList<qint64> versionParts(QStringView text) {
    QList<qint64> parts;
    for (const QStringView piece : trimmedVersion(text).split(QLatin1Char('.'), Qt::SkipEmptyParts))
        parts.append(leadingNumber(piece));
    return parts;
}

VersionOrder compareVersions(QStringView left, QStringView right) {
    const QList<qint64> leftParts = versionParts(left);
    const QList<qint64> rightParts = versionParts(right);
    for (qsizetype i = 0; i < std::max(leftParts.size(), rightParts.size()); ++i) {
        const qint64 leftPart = leftParts.value(i, 0);
        const qint64 rightPart = rightParts.value(i, 0);
        if (leftPart != rightPart)
            return leftPart < rightPart ? VersionOrder::ascending : VersionOrder::descending;
    }
    return VersionOrder::same;
}

bool isNewerRelease(QStringView version, QStringView build, QStringView currentVersion,
                    QStringView currentBuild) {
    const VersionOrder byVersion = compareVersions(version, currentVersion);
    if (byVersion != VersionOrder::same) return byVersion == VersionOrder::descending;
    return compareVersions(build, currentBuild) == VersionOrder::descending;
}

}  // namespace orlix
