// A rounded card with a section head; what it holds goes into its layout.
#pragma once

#include <QVBoxLayout>
#include <QWidget>

namespace orlix {

class TextLabel;
class Theme;

class Card : public QWidget {
    Q_OBJECT
  public:
    explicit Card(Theme& theme, QWidget* parent = nullptr);

    void setTitle(const QString& title);
    QVBoxLayout* content() const { return layout_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Theme& theme_;
    QVBoxLayout* layout_;
    TextLabel* title_ = nullptr;
};

}  // namespace orlix
