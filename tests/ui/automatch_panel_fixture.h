// The side panel with a series whose games end when the test says so.
#pragma once

#include "panel_tabs_fixture.h"
#include "series_by_hand.h"
#include "ui/panel/automatch_history_list.h"
#include "ui/panel/automatch_history_model.h"
#include "ui/panel/automatch_history_row.h"
#include "ui/panel/automatch_scoreboard.h"
#include "ui/panel/automatch_tab.h"
#include "ui/panel/automatch_widget.h"
#include "ui/panel/figure_label.h"

namespace orlix::test {

/// The texts of a list as one, for comparing and for reading what differs.
inline std::string joined(const QStringList& texts) {
    return utf8(texts.join(QStringLiteral(" | ")));
}

class AutomatchPanel : public PanelTabsTest {
  protected:
    static constexpr int gameTab = 0;
    static constexpr int automatchTab = 2;

    /// Two engines in the registry and the automatch tab in front.
    void openTab() {
        registerEngines();
        engines->setSelectedBlackEngine(engines->availableEngines().at(1));
        panel->setSelectedTab(automatchTab);
    }
    /// A running series of `games` games, the first one on the board.
    void startSeries(qint64 games = 10) {
        openTab();
        automatch->startAutomatch(games);
    }
    void end(const GameEndReason& reason) { endGame(*automatch, reason); }
    /// Ends the running game and waits out the pause after it.
    void endAndGoOn(const GameEndReason& reason) {
        end(reason);
        time.runDue();
        while (automatch->isCountingDown())
            time.advance(200ms);
    }
    void playOn(int games) { playGames(*automatch, time, games); }

    AutomatchHistoryList* list() const { return panel->findChild<AutomatchHistoryList*>(); }
    const AutomatchHistoryModel& model() const {
        return *static_cast<AutomatchHistoryModel*>(list()->model());
    }
    /// The middle of row `row` as shown now.
    QPoint middle(int row) const { return list()->visualRect(list()->model()->index(row, 0)).center(); }
    QPoint symbol(int row) const {
        return AutomatchHistoryRow::button(list()->visualRect(list()->model()->index(row, 0))).center();
    }
    void press(const QPoint& place) const {
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    }
    QString text(const char* name) const { return find<TextLabel>(name)->text(); }
    QString figure(const char* name) const { return find<FigureLabel>(name)->text(); }
    bool isShown(const char* name) const { return find<QWidget>(name)->isVisible(); }

    /// Counts the paint events of everything in the panel.
    struct PanelWatch {
        explicit PanelWatch(const QWidget& panel) {
            QCoreApplication::processEvents();
            for (QWidget* widget : panel.findChildren<QWidget*>())
                watches.emplace_back(widget, std::make_unique<PaintWatch>(widget));
        }
        /// What was painted, by object name or class.
        QStringList painted() const {
            QCoreApplication::processEvents();
            QStringList names;
            for (const auto& [widget, watch] : watches) {
                if (watch->count == 0) continue;
                names.append(widget->objectName().isEmpty()
                                 ? QString::fromLatin1(widget->metaObject()->className())
                                 : widget->objectName());
            }
            return names;
        }
        std::vector<std::pair<QWidget*, std::unique_ptr<PaintWatch>>> watches;
    };
};

}  // namespace orlix::test
