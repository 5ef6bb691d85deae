// The Engine tab over engines that say what the test tells them.
#pragma once

#include <QScrollBar>

#include "panel_tabs_fixture.h"
#include "ui/panel/analysis_card.h"
#include "ui/panel/uci_console_view.h"

namespace orlix::test {

class EngineTabTest : public PanelTabsTest {
  protected:
    UciConsoleView* console() const { return find<UciConsoleView>("console"); }
    EvaluationFigures* figures() const { return panel->findChild<EvaluationFigures*>(); }
    QScrollBar* bar() const { return console()->verticalScrollBar(); }

    /// Says `count` numbered lines.
    void chatter(int count, int from = 1) {
        QByteArray lines;
        for (int number = from; number < from + count; ++number)
            lines += "info string line " + QByteArray::number(number) + '\n';
        lines.chop(1);
        say(lines);
    }
};

}  // namespace orlix::test
