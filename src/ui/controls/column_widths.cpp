#include "ui/controls/column_widths.h"

#include <algorithm>
#include <functional>
#include <numeric>

namespace orlix {

QList<qreal> columnWidths(const QList<qreal>& needs, qreal room) {
    const auto count = static_cast<qreal>(needs.size());
    if (std::accumulate(needs.begin(), needs.end(), 0.0) > room)
        return QList<qreal>(needs.size(), room / count);
    QList<qreal> widestFirst = needs;
    std::sort(widestFirst.begin(), widestFirst.end(), std::greater<>());
    qreal rest = room;
    qreal sharing = count;
    for (const qreal need : widestFirst) {
        if (need * sharing <= rest) break;
        rest -= need;
        sharing -= 1;
    }
    QList<qreal> widths;
    for (const qreal need : needs)
        widths.append(sharing > 0 ? std::max(need, rest / sharing) : need);
    return widths;
}

}  // namespace orlix
