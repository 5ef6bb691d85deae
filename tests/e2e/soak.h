// A restless person at the window: clicks, drags, keys, tabs, games of every kind, languages, colours and
// dialogs in an order that a seed decides, against engines with faults. Looks at quiet moments whether the
// program has grown. Main thread.
#pragma once

#include <QElapsedTimer>
#include <QString>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "e2e/soak_application.h"

namespace orlix::e2e {

struct SoakPlan {
    double minutes = 30;
    int leastActions = 0;          ///< on a slow machine it goes on for these
    std::size_t leastSamples = 2;  ///< and for these quiet moments
    unsigned seed = 1;
    int warmUpSeconds = 300;  ///< after which nothing may grow
    int quietEverySeconds = 60;
    qint64 growthKib = 2048;   ///< that the memory of its own may grow after the warm-up
    int answerLimitMs = 2000;  ///< that the window may take to answer
    QString pictures;          ///< folder for pictures of the screen on the way; empty for none

    /// The form of a test: two minutes, and bounds that know that half a minute warms less and
    /// that the machine may be slow.
    static SoakPlan brief();
};

/// One quiet moment.
struct SoakSample {
    double seconds = 0;
    SoakFigures figures;
};

/// What is wrong with the samples taken so far, or nothing. The first after the warm-up is what all later
/// ones are held against.
std::string faultOf(const std::vector<SoakSample>& samples, const SoakPlan& plan);

class Soak {
  public:
    Soak(SoakedApplication& application, const SoakPlan& plan);
    /// Throws std::runtime_error at the first fault.
    void run();

    const std::vector<SoakSample>& samples() const { return samples_; }
    int actionCount() const { return actions_; }
    int gameCount() const { return games_; }
    int longestAnswerMs() const { return longestAnswerMs_; }

  private:
    int below(int limit);
    QPoint within(const QRect& area);
    QRect panel() const;
    void act();
    void checkAnswer();
    void closeDialogs();
    bool clickControl(const char* key);
    void clickSquares();
    void drag();
    void pressAnyKey();
    void openTab(int index);
    void startGame(const char* mode);
    void chooseEngine();
    void chooseLanguage(Language language);
    void openDialog(const char* tab, const char* button);
    void restoreEngines();
    void findEngines();
    void tour();
    SoakFigures leastFigures() const;
    void rest();
    void takePicture() const;
    void leave();

    SoakedApplication& application_;
    const SoakPlan plan_;
    std::mt19937 random_;
    QElapsedTimer clock_;
    std::vector<SoakSample> samples_;
    int actions_ = 0;
    int games_ = 0;
    int longestAnswerMs_ = 0;
    bool isDark_ = false;
};

}  // namespace orlix::e2e
