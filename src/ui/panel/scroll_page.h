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

/// Stands between a page and what is fixed below it: a hairline while the page goes on underneath, else
/// nothing.
class ScrollPageEdge : public QWidget {
    Q_OBJECT
  public:
    ScrollPageEdge(const ScrollPage& page, Theme& theme, QWidget* parent = nullptr);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    const ScrollPage& page_;
    Theme& theme_;
};

}  // namespace orlix
