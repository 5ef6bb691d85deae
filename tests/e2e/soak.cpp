#include "e2e/soak.h"

#include <QDir>
#include <QThread>
#include <algorithm>
#include <array>
#include <cstdio>
#include <stdexcept>

namespace orlix::e2e {

namespace {

constexpr int panelWidth = 400;
constexpr int settleMs = 60000;  // an engine which ignores everything is killed long before
constexpr int threadIdleMs = 40000;
constexpr int freePagesMs = 5000;
constexpr int dialogLimitMs = 30000;
constexpr int engineAddedLimitMs = 9000;
constexpr int mostAttempts = 20;
constexpr int picturePeriod = 40;  // actions
constexpr int listMargin = 6;
constexpr int listRowHeight = 32;

constexpr std::array tabs{"tab_game",     "tab_engine",  "tab_automatch",
                          "tab_new_game", "tab_engines", "tab_export"};
constexpr std::array modes{"mode_human_vs_engine", "mode_engine_vs_engine", "mode_human_vs_human"};
constexpr std::array keys{"Left",   "Right", "Up",    "Down", "Return", "space",
                          "Escape", "Home",  "End",   "Tab",  "ctrl+n", "ctrl+z",
                          "ctrl+f", "Left",  "Right", "Up",   "Down",   "Return"};

std::string kib(qint64 count) {
    return std::to_string(count) + " KiB";
}

}  // namespace

SoakPlan SoakPlan::brief() {
    SoakPlan plan;
    plan.minutes = 2;
    plan.leastActions = 60;
    plan.leastSamples = 3;
    plan.warmUpSeconds = 30;
    plan.quietEverySeconds = 25;
    plan.growthKib = 8192;
    plan.answerLimitMs = 30000;
    return plan;
}

std::string faultOf(const std::vector<SoakSample>& samples, const SoakPlan& plan) {
    const SoakSample* base = nullptr;
    for (const SoakSample& sample : samples) {
        if (sample.seconds < plan.warmUpSeconds) continue;
        if (base == nullptr) {
            base = &sample;
            continue;
        }
        const SoakFigures& now = sample.figures;
        const SoakFigures& then = base->figures;
        if (now.anonymousKib > then.anonymousKib + plan.growthKib)
            return "memory has grown from " + kib(then.anonymousKib) + " to " + kib(now.anonymousKib);
        if (now.descriptors != then.descriptors)
            return "descriptors were " + std::to_string(then.descriptors) + " and are " +
                   std::to_string(now.descriptors);
        if (now.threads != then.threads)
            return "threads were " + std::to_string(then.threads) + " and are " + std::to_string(now.threads);
    }
    return {};
}

Soak::Soak(SoakedApplication& application, const SoakPlan& plan)
    : application_(application), plan_(plan), random_(plan.seed) {}

// The library's distributions differ between libraries; a seed shall not.
int Soak::below(int limit) {
    return static_cast<int>(random_() % static_cast<unsigned>(limit));
}

QPoint Soak::within(const QRect& area) {
    return {area.left() + below(area.width()), area.top() + below(area.height())};
}

QRect Soak::panel() const {
    QRect area = application_.window();
    area.setLeft(area.right() - panelWidth + 1);
    return area;
}

void Soak::checkAnswer() {
    longestAnswerMs_ = std::max(longestAnswerMs_, application_.check(plan_.answerLimitMs));
}

void Soak::closeDialogs() {
    for (int attempt = 0; application_.hasDialog(); ++attempt) {
        if (attempt == mostAttempts) application_.fail("a dialog does not close on Escape");
        application_.activateDialog();
        application_.desktop().press(QStringLiteral("Escape"));
        waitUntil([this] { return !application_.hasDialog(); }, 300);
        checkAnswer();
    }
}

bool Soak::clickControl(const char* key) {
    closeDialogs();
    const std::optional<QPoint> place = application_.control(key);
    if (place) application_.desktop().click(*place);
    checkAnswer();
    return place.has_value();
}

void Soak::clickSquares() {
    const QRect board = application_.board();
    const int side = board.width() / 8;
    const int column = below(8);
    const auto center = [&](int x, int y) {
        return QPoint(board.left() + x * side + side / 2, board.top() + y * side + side / 2);
    };
    // A piece of the side that moves and a square in front of it, four times out of five: a legal move often
    // enough for games to go on.
    const bool isUpward = below(2) == 0;
    const int row = below(5) == 0 ? below(8) : (isUpward ? 7 - below(3) : below(3));
    const int ahead = (isUpward ? -1 : 1) * (1 + below(2));
    application_.desktop().click(center(column, row));
    application_.desktop().click(
        center(std::clamp(column + below(3) - 1, 0, 7), std::clamp(row + ahead, 0, 7)));
}

void Soak::drag() {
    const QPoint from = within(application_.board());
    const QPoint to = below(4) == 0 ? within(application_.window()) : within(application_.board());
    application_.desktop().repeat(
        {{QStringLiteral("mousemove"), QString::number(from.x()), QString::number(from.y()),
          QStringLiteral("mousedown"), QStringLiteral("1"), QStringLiteral("mousemove"),
          QString::number((from.x() + to.x()) / 2), QString::number((from.y() + to.y()) / 2),
          QStringLiteral("mousemove"), QString::number(to.x()), QString::number(to.y()),
          QStringLiteral("mouseup"), QStringLiteral("1")}});
}

void Soak::pressAnyKey() {
    application_.desktop().press(QLatin1String(keys[static_cast<std::size_t>(below(int(keys.size())))]));
}

void Soak::openTab(int index) {
    // A pop-up list that is still open takes the first click for itself.
    if (!clickControl(tabs[static_cast<std::size_t>(index)]))
        application_.fail(std::string("no tab ") + tabs[static_cast<std::size_t>(index)]);
}

void Soak::startGame(const char* mode) {
    application_.desktop().press(QStringLiteral("Escape"));
    openTab(3);
    // The page may have been scrolled down before; the modes are at its head.
    application_.desktop().repeat(
        {{QStringLiteral("mousemove"), QString::number(panel().center().x()),
          QString::number(panel().center().y()), QStringLiteral("click"), QStringLiteral("--repeat"),
          QStringLiteral("25"), QStringLiteral("--delay"), QStringLiteral("2"), QStringLiteral("4")}});
    for (int attempt = 0; !clickControl(mode); ++attempt) {
        if (attempt == mostAttempts) application_.fail(std::string("no choice ") + mode);
        application_.desktop().press(QStringLiteral("Escape"));
        openTab(3);
    }
    chooseEngine();
    if (!clickControl("btn_start_game")) application_.fail("no button to start a game");
    ++games_;
}

// One of the seats on the open page, if there is any, and one of the two engines that are always there.
void Soak::chooseEngine() {
    const QList<QRect> pickers = application_.enginePickers();
    const QList<int> rows = application_.engineRows();
    const std::optional<QPoint> startButton = application_.control("btn_start_game");
    if (pickers.isEmpty() || rows.isEmpty() || !startButton) return;
    const QRect picker = pickers[below(int(pickers.size()))];
    const int row = rows[below(int(rows.size()))];
    // What the page has scrolled below the button is not on the screen; a list without room opens upwards.
    if (picker.bottom() + listRowHeight > startButton->y()) return;
    if (picker.bottom() + listMargin + application_.engineCount() * listRowHeight > panel().bottom()) return;
    application_.desktop().click(picker.center());
    checkAnswer();
    application_.desktop().click(
        {picker.center().x(), picker.bottom() + listMargin + row * listRowHeight + listRowHeight / 2});
    checkAnswer();
}

void Soak::chooseLanguage(Language language) {
    const auto index = std::find(allLanguages.begin(), allLanguages.end(), language) - allLanguages.begin();
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        closeDialogs();
        // An open list takes a press elsewhere, or this key, for itself.
        application_.desktop().press(QStringLiteral("Escape"));
        const std::optional<QRect> picker = application_.languagePicker();
        if (!picker) application_.fail("no language picker");
        application_.desktop().click(picker->center());
        // A pop-up list is in no tree of a window: its rows are found by where they stand below the picker.
        checkAnswer();
        application_.desktop().click(
            {picker->center().x(),
             picker->bottom() + listMargin + int(index) * listRowHeight + listRowHeight / 2});
        checkAnswer();
        if (application_.language() == language) return;
    }
    application_.fail("the language does not change");
}

void Soak::openDialog(const char* tab, const char* button) {
    clickControl(tab);
    if (!clickControl(button)) return;
    waitUntil([this] { return application_.hasDialog(); }, dialogLimitMs);
    checkAnswer();
    closeDialogs();
}

void Soak::restoreEngines() {
    for (int attempt = 0;; ++attempt) {
        const QStringList missing = application_.missingEngines();
        if (missing.isEmpty()) return;
        if (attempt == mostAttempts) application_.fail("a removed engine cannot be added again");
        clickControl("tab_engines");
        if (!clickControl("add_engine")) continue;
        if (!waitUntil([this] { return application_.hasDialog(); }, dialogLimitMs)) continue;
        application_.desktop().press(QStringLiteral("ctrl+a"));
        application_.desktop().type(missing.constFirst());
        application_.desktop().press(QStringLiteral("Return"));
        // Now and then the file crashes while it is tested; then an alert says so.
        waitUntil(
            [&] {
                return !application_.missingEngines().contains(missing.constFirst()) ||
                       application_.hasDialog();
            },
            1000);
        waitUntil([&] { return !application_.missingEngines().contains(missing.constFirst()); },
                  engineAddedLimitMs);
        closeDialogs();
    }
}

// A random click may find or remove engines of this machine; their rows shall not count as growth.
void Soak::findEngines() {
    openTab(4);
    if (!clickControl("scan_engines")) application_.fail("no button to find engines");
}

// Everything that is built or read at its first use has been used once when this is through.
void Soak::tour() {
    for (const bool isDark : {true, false}) {
        application_.setDark(isDark);
        for (const Language language : allLanguages) {
            chooseLanguage(language);
            for (int tab = 0; tab < int(tabs.size()); ++tab)
                openTab(tab);
        }
    }
    openDialog("tab_export", "btn_save_pgn");
    openDialog("tab_engines", "add_engine");
    findEngines();
    for (const char* mode : modes) {
        startGame(mode);
        for (int times = 0; times < 3; ++times)
            clickSquares();
    }
}

void Soak::act() {
    struct Action {
        int weight;
        void (*run)(Soak&);
    };
    static constexpr std::array actions{
        Action{50, [](Soak& soak) { soak.clickSquares(); }},
        Action{6, [](Soak& soak) { soak.drag(); }},
        Action{14, [](Soak& soak) { soak.application_.desktop().click(soak.within(soak.panel())); }},
        Action{
            8,
            [](Soak& soak) { soak.application_.desktop().click(soak.within(soak.application_.window())); }},
        Action{4, [](Soak& soak) { soak.application_.desktop().scrollDown(soak.within(soak.panel())); }},
        Action{18, [](Soak& soak) { soak.pressAnyKey(); }},
        Action{6, [](Soak& soak) { soak.clickControl(tabs[static_cast<std::size_t>(soak.below(6))]); }},
        Action{3, [](Soak& soak) { soak.startGame(modes[static_cast<std::size_t>(soak.below(3))]); }},
        Action{1, [](Soak& soak) { soak.clickControl("btn_pause"); }},
        Action{1, [](Soak& soak) { soak.clickControl("btn_resign"); }},
        Action{1, [](Soak& soak) { soak.clickControl("btn_undo"); }},
        Action{1, [](Soak& soak) { soak.openDialog("tab_export", "btn_save_pgn"); }},
        Action{1, [](Soak& soak) { soak.application_.desktop().press(QStringLiteral("ctrl+s")); }},
        Action{
            1,
            [](Soak& soak) { soak.chooseLanguage(allLanguages[static_cast<std::size_t>(soak.below(4))]); }},
        Action{2,
               [](Soak& soak) {
                   soak.isDark_ = !soak.isDark_;
                   soak.application_.setDark(soak.isDark_);
               }},
    };
    int total = 0;
    for (const Action& action : actions)
        total += action.weight;
    int left = below(total);
    for (const Action& action : actions) {
        left -= action.weight;
        if (left >= 0) continue;
        action.run(*this);
        break;
    }
    ++actions_;
    checkAnswer();
    closeDialogs();
}

// What the program holds on to: free pages go back some seconds after the last game or dialog has gone.
SoakFigures Soak::leastFigures() const {
    SoakFigures least = application_.figures();
    waitUntil(
        [&] {
            const SoakFigures now = application_.figures();
            if (now.anonymousKib < least.anonymousKib) least = now;
            QThread::msleep(200);
            return false;
        },
        freePagesMs);
    return least;
}

// The same place each time, with no engine left: what is more than last time has been kept for nothing.
void Soak::rest() {
    restoreEngines();
    findEngines();
    isDark_ = false;
    application_.setDark(false);
    chooseLanguage(Language::english);
    startGame("mode_human_vs_human");
    openTab(0);
    if (!waitUntil([this] { return application_.otherProcesses().isEmpty(); }, settleMs))
        application_.fail("an engine without a game runs on: " +
                          application_.otherProcesses().join(u'\n').toStdString());
    // Threads of a pool, and what they hold, end half a minute after their last work.
    waitUntil(
        [this] {
            const SoakFigures now = application_.figures();
            for (const SoakSample& sample : samples_)
                if (now.threads > sample.figures.threads || now.descriptors > sample.figures.descriptors)
                    return false;
            return true;
        },
        threadIdleMs);
    samples_.push_back({double(clock_.elapsed()) / 1000, leastFigures()});
    const SoakSample& sample = samples_.back();
    std::printf(
        "%6.0f s  %5d actions  %4d games  %6lld KiB own  %6lld KiB Pss  %d descriptors  %d threads  "
        "longest answer %d ms\n",
        sample.seconds, actions_, games_, static_cast<long long>(sample.figures.anonymousKib),
        static_cast<long long>(sample.figures.pssKib), sample.figures.descriptors, sample.figures.threads,
        longestAnswerMs_);
    std::fflush(stdout);
    const std::string fault = faultOf(samples_, plan_);
    if (!fault.empty())
        application_.fail(fault + "\n" + application_.descriptors().join(u'\n').toStdString());
}

void Soak::takePicture() const {
    if (plan_.pictures.isEmpty()) return;
    const QString name = QStringLiteral("soak-%1.png").arg(actions_, 5, 10, QChar(u'0'));
    application_.desktop().screen().save(QDir(plan_.pictures).filePath(name));
}

void Soak::leave() {
    startGame("mode_engine_vs_engine");
    const std::optional<int> exitCode = application_.close();
    if (!exitCode) application_.fail("the program does not end when its window is closed");
    if (*exitCode != 0) application_.fail("the program ends with " + std::to_string(*exitCode));
    if (!waitUntil([this] { return application_.otherProcesses().isEmpty(); }, settleMs))
        application_.fail("left running: " + application_.otherProcesses().join(u'\n').toStdString());
    const QStringList messages = application_.unknownMessages();
    if (!messages.isEmpty()) application_.fail("unknown messages:\n" + messages.join(u'\n').toStdString());
}

void Soak::run() {
    clock_.start();
    tour();
    double restAt = 0;
    const double end = plan_.minutes * 60;
    const auto isEnough = [&] {
        return actions_ >= plan_.leastActions && samples_.size() + 1 >= plan_.leastSamples;  // one comes last
    };
    for (double now = 0; now < end || !isEnough(); now = double(clock_.elapsed()) / 1000) {
        if (now >= restAt) {
            rest();
            restAt = double(clock_.elapsed()) / 1000 + plan_.quietEverySeconds;
        }
        act();
        if (actions_ % picturePeriod == 0) takePicture();
    }
    rest();
    leave();
}

}  // namespace orlix::e2e
