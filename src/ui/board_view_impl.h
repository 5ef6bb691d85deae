// What is behind a board view: the picture shown, the motion under way, the pointer and the cursor. Owned by
// its view; main thread only. Drawing and input have a file each.
#pragma once

#include <QEasingCurve>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QRegion>
#include <QTimer>
#include <QtMath>
#include <algorithm>
#include <utility>

#include "game/game_manager.h"
#include "l10n/extra_texts.h"
#include "l10n/localization_manager.h"
#include "platform/system_settings.h"
#include "ui/assistive_technology.h"
#include "ui/board_accessible.h"
#include "ui/board_cursor.h"
#include "ui/board_geometry.h"
#include "ui/board_motion.h"
#include "ui/board_painter.h"
#include "ui/board_picture.h"
#include "ui/board_pointer.h"
#include "ui/board_view.h"
#include "ui/board_words.h"
#include "ui/promotion_picker.h"
#include "ui/theme.h"

namespace orlix {

class BoardView::Impl {
  public:
    Impl(BoardView& view, GameManager& game, LocalizationManager& loc, Theme& theme,
         const SystemSettings& system)
        : view_(view),
          game_(game),
          loc_(loc),
          theme_(theme),
          system_(system),
          picture_(BoardPicture::of(game)),
          placement_(game.displayedBoard().squares),
          frames_(new QTimer(&view)),
          pointer_(game),
          narrator_(game, loc) {
        constexpr int frameMs = 25;
        frames_->setInterval(frameMs);
        frames_->setTimerType(Qt::PreciseTimer);
        connect(frames_, &QTimer::timeout, &view_, [this] { advanceMotion(); });
    }

    BoardGeometry geometry() const {
        const qreal ratio = view_.devicePixelRatioF();
        const QPointF corner = QPointF(view_.mapTo(view_.window(), QPoint())) * ratio;
        return BoardGeometry::fitting(view_.size(), ratio, corner, picture_.isFlipped);
    }

    const BoardPicture& picture() const { return picture_; }
    const LocalizationManager& texts() const { return loc_; }
    const BoardCursor& cursor() const { return cursor_; }
    const QString& announcement() const { return announcement_; }
    AssistiveTechnology& listener() const { return *listener_; }
    void setListener(AssistiveTechnology& listener) { listener_ = &listener; }

    void updateTexts() { view_.setAccessibleName(extraText(loc_.currentLanguage(), ExtraText::board)); }
    void showState();
    void narrate();
    void paint(const QRegion& region);
    void press(const QPointF& position);
    void movePointer(const QPointF& position);
    void release(const QPointF& position);
    void forgetPointer() { hover(std::nullopt); }
    void clickSquare(Square square) { game_.handleSquareClick(square); }
    void cancelPress();
    bool pressKey(const QKeyEvent& event);
    void takeFocus(Qt::FocusReason reason);
    void placeCursor(Square square);
    void updateCursor() { updateSquare(cursor_.square); }
    void placePicker();
    void preparePieces() { painter_.prepare(geometry()); }
    void showPromotion();

  private:
    void updateSquare(Square square) { view_.update(geometry().rect(square).toAlignedRect()); }
    void updateSquare(const std::optional<Square>& square) {
        if (square) updateSquare(*square);
    }
    void hover(std::optional<Square> square);
    void showPicture(const BoardPicture& next, const BoardMotion::Placement& before);
    void reconsiderPress(bool isOtherPosition, bool isOtherPlace);
    void moveCursor(int columns, int rows);
    void drop(const BoardPointer::Drop& drop, const QPointF& position);
    void startReturn(Square square, const QPointF& position);
    /// Everything that changes with the pointer while a piece hangs on it, in the widget's units.
    QRegion pressArea() const;
    void paintLifted(QPainter& painter, const BoardGeometry& squares, Square square);
    void startMotion(const BoardMotion::Placement& before);
    void runMotion();
    void advanceMotion();
    void finishMotion();
    /// Everything that the motion under way paints at its present stage, in the widget's units.
    QRegion motionArea() const;
    QPoint travellerCorner(const BoardGeometry& squares, const BoardMotion::Traveller& traveller) const;
    void paintMotion(QPainter& painter, const BoardGeometry& squares);

    BoardView& view_;
    GameManager& game_;
    LocalizationManager& loc_;
    Theme& theme_;
    const SystemSettings& system_;
    BoardPicture picture_;
    BoardMotion::Placement placement_;  ///< of the position shown, with the pieces' identities
    BoardMotion motion_;                ///< empty when nothing travels
    qreal progress_ = 1;                ///< of the motion, eased, 0 to 1
    QElapsedTimer elapsed_;
    QTimer* frames_;  ///< child of the view; runs during a motion only
    BoardPainter painter_;
    PromotionPicker* picker_ = nullptr;  ///< child of the view, built when it is first needed
    BoardPointer pointer_;
    BoardCursor cursor_;
    AssistiveTechnology* listener_ = &AssistiveTechnology::ofSystem();  ///< borrowed
    BoardNarrator narrator_;
    QString announcement_;
    std::optional<Square> hovered_;
    std::optional<BoardPointer::Drop> drop_;  ///< while its click is made: that piece has arrived already
    /// Where a piece let go flies home from, the corner of its picture in the widget's units; unset for all
    /// other motion.
    std::optional<QPointF> returnCorner_;
};

}  // namespace orlix
