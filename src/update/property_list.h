// Reads property lists, XML and binary. Pure functions; any thread.
#pragma once

#include <QByteArray>
#include <QVariant>
#include <optional>

namespace orlix {

/// The largest list that is read, bytes; what a bundle or the disk-image tool writes is far smaller.
inline constexpr qsizetype largestPropertyList = 1 << 20;

/// The property list in `bytes` when it is a dictionary: texts as QString, truth values as bool, whole
/// numbers as qint64, arrays as QVariantList, dictionaries as QVariantMap; values of other types are null.
/// Nothing when it is something else, is larger than `largestPropertyList`, or is no harmless one
/// (property_list_limits.h).
std::optional<QVariantMap> readPropertyList(const QByteArray& bytes);

}  // namespace orlix
