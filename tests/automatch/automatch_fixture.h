// What the tests of a series share: an automatch manager over the fixture of the game manager.
#pragma once

#include "automatch/automatch_manager.h"
#include "automatch/short_games.h"
#include "game/game_fixture.h"

namespace orlix::test {

/// Fills the registry as if these engines had been stored in an earlier run, and selects none.
inline void fillRegistry(FakeDefaultsStore& defaults, EngineManager& engines,
                         const QList<EngineConfiguration>& records) {
    defaults.setData(QStringLiteral("Velmorandix_InstalledEngines"), toJson(records));
    engines.loadEngines();
    engines.setSelectedWhiteEngine(std::nullopt);
    engines.setSelectedBlackEngine(std::nullopt);
}

class AutomatchTest : public GameTest {
  protected:
    AutomatchTest() {
        fillRegistry(defaults, engines, {alpha, beta});
        QObject::connect(&automatch, &AutomatchManager::changed, &automatch, [this] { ++seriesChanges; });
    }

    /// Starts a series of Alpha, engine 1, against Beta.
    void startSeries(std::optional<qint64> games = {}) {
        automatch.startAutomatch(games, alpha, beta);
        settle();
        sounds.played.clear();
        seriesChanges = 0;
    }

    /// Lets the engines of the game on the board say these moves, without their pauses.
    void answer(const QByteArrayList& moves) {
        for (const QByteArray& move : moves) {
            launcher.last().sayLine("bestmove " + move);
            QCoreApplication::processEvents();
        }
    }

    /// Lets the countdown pass: eight steps from its standard 1.5 seconds.
    void waitForNextGame() {
        time.advance(1600ms);
        settle();
    }

    QString history() const {
        QStringList games;
        for (const AutomatchGameRecord& record : automatch.history())
            games.append(QString::number(record.gameNumber) + u' ' + record.result);
        return games.join(QStringLiteral(", "));
    }

    QString score() const {
        return QStringLiteral("%1 : %2, %3 drawn")
            .arg(automatch.engine1Wins())
            .arg(automatch.engine2Wins())
            .arg(automatch.draws());
    }

    const EngineConfiguration alpha = engineNamed(QStringLiteral("Alpha"));
    const EngineConfiguration beta = engineNamed(QStringLiteral("Beta"));
    AutomatchManager automatch{time, manager, engines, sounds};
    int seriesChanges = 0;
};

}  // namespace orlix::test
