// A tab's content that scrolls when the panel is too low for it; cards go into its layout, top to bottom.
#pragma once

#include <QScrollArea>

class QVBoxLayout;

namespace orlix {

class Theme;

class ScrollPage : public QScrollArea {
    Q_OBJECT
  public:
    explicit ScrollPage(Theme& theme, QWidget* parent = nullptr);

    QVBoxLayout* content() const { return content_; }

  private:
    QVBoxLayout* content_;
};

}  // namespace orlix
