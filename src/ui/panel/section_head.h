// The head of a section: its symbol, its title, and room for something at the right end.
#pragma once

#include <QWidget>

#include "ui/icons.h"

class QHBoxLayout;

namespace orlix {

class TextLabel;
class Theme;

class SectionHead : public QWidget {
    Q_OBJECT
  public:
    SectionHead(Icon icon, Theme& theme, QWidget* parent = nullptr);

    void setTitle(const QString& title);
    /// Puts `widget` at the right end.
    void addTrailing(QWidget* widget);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Icon icon_;
    Theme& theme_;
    QHBoxLayout* layout_;
    TextLabel* title_;
};

}  // namespace orlix
