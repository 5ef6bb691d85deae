#include "game/chess_clock.h"

#include <algorithm>
#include <utility>

#include "game/checked_arithmetic.h"

namespace orlix {
namespace {

using std::chrono::system_clock;

constexpr std::chrono::milliseconds tickInterval{50};

/// Whole milliseconds from `from` to `to`, truncated toward zero; negative when the wall clock was set back.
qint64 elapsedMs(system_clock::time_point from, system_clock::time_point to) {
    const qint64 ticks = checkedSubtract(to.time_since_epoch().count(), from.time_since_epoch().count());
    return std::chrono::duration_cast<std::chrono::milliseconds>(system_clock::duration(ticks)).count();
}

QLatin1Char digit(qint64 value) {
    return QLatin1Char(static_cast<char>('0' + value));
}

}  // namespace

ChessClock::ChessClock(const TimeControlConfig& config, TimeSource& time, QObject* parent)
    : QObject(parent), time_(time) {
    setUp(config);
}

qint64 ChessClock::remainingMs(PieceColor color) const {
    return color == PieceColor::white ? whiteRemainingMs_ : blackRemainingMs_;
}

qint64& ChessClock::remaining(PieceColor color) {
    return color == PieceColor::white ? whiteRemainingMs_ : blackRemainingMs_;
}

void ChessClock::setOnTimeout(TimeoutHandler handler) {
    onTimeout_ = std::move(handler);
}

void ChessClock::setUp(const TimeControlConfig& config) {
    const qint64 baseMs = checkedMultiply(config.effectiveBaseSeconds(), 1000);
    const qint64 incrementMs = checkedMultiply(config.effectiveIncrementSeconds(), 1000);
    isUnlimited_ = config.isUnlimited();
    whiteRemainingMs_ = baseMs;
    blackRemainingMs_ = baseMs;
    incrementMs_ = incrementMs;
}

void ChessClock::halt() {
    isRunning_ = false;
    timer_.reset();
    lastTickDate_.reset();
}

void ChessClock::reset(const TimeControlConfig& config) {
    halt();
    activeColor_.reset();
    setUp(config);
    Q_EMIT changed();
}

void ChessClock::start(PieceColor color) {
    activeColor_ = color;
    isRunning_ = true;
    if (!isUnlimited_) {
        lastTickDate_ = time_.now();
        timer_ = time_.every(tickInterval, [this] { tick(); });
    }
    Q_EMIT changed();
}

void ChessClock::switchTurn(PieceColor color) {
    if (!isUnlimited_) {
        if (activeColor_) {
            qint64& credited = remaining(*activeColor_);
            credited = checkedAdd(credited, incrementMs_);
        }
        // The time since the last tick is dropped on purpose: neither side is charged for it.
        lastTickDate_ = time_.now();
    }
    activeColor_ = color;
    Q_EMIT changed();
}

void ChessClock::pause() {
    halt();
    Q_EMIT changed();
}

void ChessClock::resume() {
    if (activeColor_) start(*activeColor_);
}

void ChessClock::stop() {
    halt();
    activeColor_.reset();
    Q_EMIT changed();
}

void ChessClock::tick() {
    if (!isRunning_ || !activeColor_ || !lastTickDate_) return;
    const PieceColor color = *activeColor_;
    const system_clock::time_point now = time_.now();
    const qint64 elapsed = elapsedMs(*lastTickDate_, now);
    lastTickDate_ = now;

    qint64& left = remaining(color);
    left = std::max<qint64>(checkedSubtract(left, elapsed), 0);
    if (left > 0) {
        Q_EMIT changed();
        return;
    }
    halt();
    activeColor_.reset();
    const TimeoutHandler handler = onTimeout_;
    Q_EMIT changed();
    if (handler) handler(color);
}

QString ChessClock::formattedTime(PieceColor color) const {
    if (isUnlimited_) return QStringLiteral("--:--");
    const qint64 ms = remainingMs(color);
    const qint64 totalSeconds = std::max<qint64>(ms / 1000, 0);
    const qint64 seconds = totalSeconds % 60;
    // Read twenty times a second while a clock runs: put together by hand.
    QString text = QString::number(totalSeconds / 60);
    text += QLatin1Char(':');
    text += digit(seconds / 10);
    text += digit(seconds % 10);
    if (totalSeconds > 9) return text;
    text += QLatin1Char('.');
    text += digit(std::max<qint64>(ms % 1000 / 100, 0));
    return text;
}

}  // namespace orlix
