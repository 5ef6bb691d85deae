// The content of the main window: board, banners and evaluation bar at the left, the panel at the right.
// Owned by the main window; main thread only. It holds no game state: it shows what the managers hold.
#pragma once

#include <QWidget>
#include <array>
#include <chrono>
#include <memory>

#include "platform/time_source.h"
#include "ui/player_banner_view.h"
#include "ui/player_info.h"

namespace orlix {

class AutomatchManager;
class BoardView;
class EngineManager;
class EngineNoticeView;
class EvaluationBarView;
class GameManager;
class LocalizationManager;
class PGNExporter;
class RightPanelView;
class SystemSettings;
class Theme;

class MainView : public QWidget {
    Q_OBJECT
  public:
    /// What the view and its parts talk to; all of it outlives them.
    struct Collaborators {
        GameManager& game;
        LocalizationManager& loc;
        EngineManager& engines;
        AutomatchManager& automatch;
        PGNExporter& exporter;
        Theme& theme;
        const SystemSettings& system;
        TimeSource& time;
    };
    static constexpr QSize smallestSize{1120, 740};

    /// Starts a new game when it is first shown.
    explicit MainView(const Collaborators& with, QWidget* parent = nullptr);
    ~MainView() override;

    PlayerInfo playerInfo(PieceColor color) const;
    /// Lays everything out for the present size and begins to draw the pieces, which takes another thread as
    /// long as the window's way to the screen.
    void prepareFirstPicture();

  protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent*) override {}  // the view shows no focus: nothing to paint again
    void focusOutEvent(QFocusEvent*) override {}
    bool focusNextPrevChild(bool next) override;

  private:
    /// One banner and what it shows; the captured pieces are found only when the game changes.
    struct Banner {
        PlayerBannerView* view = nullptr;
        PlayerBannerView::Values values;
        qint64 tenths = -1;  ///< of a second, when the clock was last looked at
    };

    void layOutChildren();
    void showGame();
    void showGame(Banner& banner, PieceColor color);
    void showClock();
    void followEvaluation();
    void showEvaluation();

    GameManager& game_;
    LocalizationManager& loc_;
    Theme& theme_;
    TimeSource& time_;
    std::array<Banner, 2> banners_;  ///< top and bottom
    BoardView* board_;
    EvaluationBarView* evaluationBar_;
    RightPanelView* rightPanel_;
    EngineNoticeView* notice_;
    std::chrono::system_clock::time_point evaluationShown_;
    std::unique_ptr<Timer> nextEvaluation_;  ///< pending while there is one to show
    bool wasShown_ = false;
};

}  // namespace orlix
