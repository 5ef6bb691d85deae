// What a series is expected to be after every command and at every moment: a second telling of the rules,
// without engines, games or timers. Numbers, score and words only.
#pragma once

#include <QString>
#include <algorithm>
#include <chrono>
#include <optional>
#include <vector>

#include "automatch/automatch_texts.h"

namespace orlix::test {

class SeriesModel {
  public:
    using Instant = std::chrono::system_clock::time_point;

    struct Game {
        qint64 number;
        QString result;
        QString winner;  ///< empty for a draw
        QString pgn;
        std::chrono::milliseconds duration;
    };

    // Settings
    qint64 total = 10;
    bool alternates = true;
    double pause = 1.5;
    QString names[2];

    // State
    bool isActive = false;
    bool isPaused = false;
    qint64 index = 0;
    bool whiteIs1 = true;
    double remaining = 0;
    QString words;  ///< empty while there are none
    std::vector<Game> games;
    int launches = 0;
    int closingSounds = 0;

    bool isCounting() const { return countdown_.has_value(); }
    /// Whether the next game follows without a pause, as soon as the event loop runs.
    bool isDueAtOnce() const { return countdown_ && countdown_->values.empty(); }
    /// Whether the countdown takes a step, or ends, at exactly this moment.
    bool isStepDueAt(Instant now) const {
        return countdown_ && now > countdown_->begin && (now - countdown_->begin) % step == step.zero() &&
               !(now > end());
    }

    qint64 wins(int engine) const {
        return std::count_if(games.begin(), games.end(),
                             [&](const Game& game) { return game.winner == names[engine - 1]; });
    }
    qint64 draws() const {
        return std::count_if(games.begin(), games.end(),
                             [](const Game& game) { return game.winner.isEmpty(); });
    }

    void start(Instant now) {
        games.clear();
        words.clear();
        isActive = true;
        isPaused = false;
        index = 1;
        whiteIs1 = true;
        launch(now);
    }

    void stop() {
        isActive = false;
        isPaused = false;
        countdown_.reset();
        words = QStringLiteral("Automatch gestoppt.");
    }

    void clear() {
        if (isActive) stop();
        games.clear();
    }

    /// Whether the game's own pause is toggled.
    bool pauseSeries() {
        if (!isActive) return false;
        isPaused = true;
        countdown_.reset();
        return true;
    }

    /// Whether the game's own pause is toggled.
    bool resume(Instant now, bool isGameOver) {
        if (!isActive || !isPaused) return false;
        isPaused = false;
        if (!isGameOver) return true;
        advance(now);
        return false;
    }

    /// Whether the game gets a record.
    bool endGame(Instant now, const GameEndReason& reason, const QString& pgn) {
        if (!isActive || isPaused) return false;
        QString winner;
        if (reason.winner) winner = names[(*reason.winner == PieceColor::white) == whiteIs1 ? 0 : 1];
        using std::chrono::milliseconds;
        games.push_back({index, automatchResult(reason), winner, pgn,
                         std::chrono::duration_cast<milliseconds>(now - launchedAt_)});
        if (index < total) {
            countdown_ = Countdown{now, {}};
            for (double left = pause; left > 0; left -= 0.2)
                countdown_->values.push_back(left);
            remaining = pause;
            return true;
        }
        countdown_.reset();
        isActive = false;
        ++closingSounds;
        const auto points = [&](int engine) { return double(wins(engine)) + double(draws()) / 2; };
        words = QStringLiteral("Automatch beendet: %1 Partien gespielt. ").arg(total) +
                automatchVerdict(names[0], points(1), names[1], points(2));
        return true;
    }

    /// What the time alone does until `now`.
    void elapse(Instant now) {
        if (!countdown_) return;
        if (now >= end()) {
            if (!countdown_->values.empty()) remaining = countdown_->values.back() - 0.2;
            advance(end());
        } else {
            remaining = countdown_->values[static_cast<std::size_t>((now - countdown_->begin) / step)];
        }
    }

  private:
    static constexpr std::chrono::milliseconds step{200};
    struct Countdown {
        Instant begin;
        std::vector<double> values;  ///< what is left before each step
    };

    Instant end() const { return countdown_->begin + countdown_->values.size() * step; }

    void launch(Instant now) {
        countdown_.reset();
        launchedAt_ = now;
        ++launches;
    }

    void advance(Instant now) {
        ++index;
        if (alternates) whiteIs1 = !whiteIs1;
        launch(now);
    }

    std::optional<Countdown> countdown_;
    Instant launchedAt_;
};

}  // namespace orlix::test
