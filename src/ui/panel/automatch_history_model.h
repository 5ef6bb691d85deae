// The finished games of a series as rows of a list, newest first. It keeps the few words that a row shows;
// the records stay with the series.
#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QString>

#include "automatch/automatch_game_record.h"

namespace orlix {

class AutomatchHistoryModel : public QAbstractListModel {
    Q_OBJECT
  public:
    struct Row {
        Uuid id;
        QString title;  ///< "Partie #3"
        QString white;
        QString black;
        bool whiteWon = false;
        bool blackWon = false;
        QString badge;
        QString reason;
    };

    using QAbstractListModel::QAbstractListModel;

    /// Takes over what was appended since the last call; starts afresh when the history was emptied
    /// meanwhile.
    void take(const QList<AutomatchGameRecord>& history);

    const Row& row(int index) const { return rows_[rows_.size() - 1 - index]; }
    /// Position of row `index` in the history.
    int historyIndex(int index) const { return static_cast<int>(rows_.size()) - 1 - index; }

    int rowCount(const QModelIndex& parent = {}) const override;
    /// One sentence of everything in the row, for display and for assistive technology.
    QVariant data(const QModelIndex& index, int role) const override;

  private:
    bool continues(const QList<AutomatchGameRecord>& history) const;

    QList<Row> rows_;  ///< oldest first, as the history
};

}  // namespace orlix
