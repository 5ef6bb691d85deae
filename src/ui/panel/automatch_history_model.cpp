#include "ui/panel/automatch_history_model.h"

#include "ui/panel/automatch_formats.h"

namespace orlix {

namespace {

AutomatchHistoryModel::Row rowOf(const AutomatchGameRecord& record) {
    return {record.id,
            automatchGameTitle(record.gameNumber),
            record.whiteEngineName,
            record.blackEngineName,
            record.result == QLatin1String("1-0"),
            record.result == QLatin1String("0-1"),
            record.resultBadgeText(),
            record.reason};
}

}  // namespace

bool AutomatchHistoryModel::continues(const QList<AutomatchGameRecord>& history) const {
    if (rows_.isEmpty()) return true;
    return history.size() >= rows_.size() && history[rows_.size() - 1].id == rows_.last().id;
}

void AutomatchHistoryModel::take(const QList<AutomatchGameRecord>& history) {
    if (!continues(history)) {
        beginResetModel();
        rows_.clear();
        for (const AutomatchGameRecord& record : history)
            rows_.append(rowOf(record));
        endResetModel();
        return;
    }
    const qsizetype before = rows_.size();
    if (history.size() == before) return;
    // The newest stand first.
    beginInsertRows({}, 0, static_cast<int>(history.size() - before) - 1);
    for (qsizetype index = before; index < history.size(); ++index)
        rows_.append(rowOf(history[index]));
    endInsertRows();
}

int AutomatchHistoryModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant AutomatchHistoryModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::AccessibleTextRole)) return {};
    const Row& shown = row(index.row());
    return QStringLiteral("%1, %2 – %3, %4, %5")
        .arg(shown.title, shown.white, shown.black, shown.badge, shown.reason);
}

}  // namespace orlix
