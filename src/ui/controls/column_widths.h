// How columns side by side share the room: as evenly as their texts allow.
#pragma once

#include <QList>

namespace orlix {

/// The widths of as many columns as there are `needs`, `room` together: all the same but for columns that
/// need more, which take it from the others. Where the needs together exceed the room all are the same.
QList<qreal> columnWidths(const QList<qreal>& needs, qreal room);

}  // namespace orlix
