// Hands the game and the position out as text, to the pasteboard or a file, and takes a position in.
#pragma once

#include <QWidget>

#include "ui/panel/panel_context.h"

class QLineEdit;

namespace orlix {

class PanelButton;
class SectionHead;
class TextLabel;

/// The framed field for a FEN; the keys go to its line edit, Space among them.
class FenField : public QWidget {
    Q_OBJECT
  public:
    explicit FenField(Theme& theme, QWidget* parent = nullptr);

    QLineEdit* edit() const { return edit_; }
    /// Marks what is typed as refused.
    void setRefused(bool isRefused);
    QSize sizeHint() const override { return {200, 36}; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void applyTheme();

    Theme& theme_;
    QLineEdit* edit_;
    bool isRefused_ = false;
};

class ExportTab : public QWidget {
    Q_OBJECT
  public:
    /// `state` is the panel's and outlives the tab.
    ExportTab(const PanelContext& context, PanelState& state, QWidget* parent = nullptr);

  Q_SIGNALS:
    void toastRequested(const QString& message);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void takeGame();
    void copy(const QString& text);
    void savePgn();
    void loadFen();
    void setRefused(bool isRefused);
    void retranslate();

    PanelContext context_;
    PanelState& state_;
    SectionHead* loadHead_ = nullptr;
    TextLabel* position_;
    PanelButton* copyPgn_;
    PanelButton* savePgn_;
    PanelButton* copyFen_;
    PanelButton* saveFen_;
    FenField* field_;
    PanelButton* load_;
    TextLabel* refusal_;
};

}  // namespace orlix
