// The one window: menu bar, main view, title, and the update sheet over it. Owned by the composition root;
// main thread only.
#pragma once

#include <QWidget>

#include "ui/main_view.h"

namespace orlix {

class UpdateController;
class UpdateView;

class MainWindow : public QWidget {
    Q_OBJECT
  public:
    static constexpr QSize defaultSize{1280, 860};

    /// An empty window of the size in which it opens, for what is to be prepared while its content is built.
    explicit MainWindow(Theme& theme);
    /// A filled one.
    MainWindow(const MainView::Collaborators& with, UpdateController& updates);
    ~MainWindow() override;

    /// Builds menus and main view. Once; all references outlive the window.
    void fill(const MainView::Collaborators& with, UpdateController& updates);

  Q_SIGNALS:
    /// Once, when the event loop runs next after the first picture.
    void firstPainted();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    Theme& theme_;
    bool wasPainted_ = false;
    UpdateView* updateSheet_ = nullptr;  ///< built when it is first needed
};

}  // namespace orlix
