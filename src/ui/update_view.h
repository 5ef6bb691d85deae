// The sheet about updates over the main window. Owned by that window; main thread only. It holds no state: it
// shows what the controller holds, and its buttons call the controller's operations.
#pragma once

#include <QDialog>

namespace orlix {

class ActivityBar;
class LocalizationManager;
class NotesView;
class PanelButton;
class ScrolledLabel;
class TextLabel;
class Theme;
class UpdateController;
class WindowShade;

class UpdateView : public QDialog {
    Q_OBJECT
  public:
    static constexpr QSize fixedSize{520, 300};

    /// Over `window`, as soon as the controller presents it. Everything outlives the view. `isAnimated` is
    /// false for users who want no motion.
    UpdateView(UpdateController& updates, LocalizationManager& loc, Theme& theme, bool isAnimated,
               QWidget* window);
    ~UpdateView() override;

    /// By the Escape key, the close command of the window manager or the end of the application.
    void reject() override;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void refresh();
    void showRelease();
    void showMessage();
    void layOut();
    void layOutButtons();
    void place();

    UpdateController& controller_;
    LocalizationManager& loc_;
    Theme& theme_;
    WindowShade* shade_;
    TextLabel* title_;
    TextLabel* release_;
    NotesView* notes_;
    TextLabel* unverifiable_;
    ScrolledLabel* message_;
    ActivityBar* activity_;
    PanelButton* close_;
    PanelButton* checkAgain_;
    PanelButton* install_;
};

}  // namespace orlix
