// The save and open panels through QFileDialog, which is the system's own panel on macOS. Owned by the
// composition root; main thread only.
#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>

#include "platform/file_dialogs.h"

class QFileDialog;

namespace orlix {

class QtFileDialogs : public FileDialogs {
  public:
    /// The panels opened from now on are modal to `window`; without one they stand alone.
    void setWindow(QWidget* window) { window_ = window; }

    void save(const SaveRequest& request, Completion completion) override;
    void open(const OpenRequest& request, Completion completion) override;

  private:
    QFileDialog* makePanel(const QString& title) const;
    void show(QFileDialog* panel, Completion completion) const;

    QPointer<QWidget> window_;
    /// Where the user confirmed last; empty before that. Shared with open panels, which may outlive this
    /// object.
    std::shared_ptr<QString> lastDirectory_ = std::make_shared<QString>();
};

}  // namespace orlix
