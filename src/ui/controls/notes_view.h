// A longer text to read, on a card of its own: it scrolls, parts of it can be selected and copied, and
// nothing in it is markup.
#pragma once

#include <QWidget>

class QPlainTextEdit;

namespace orlix {

class Theme;

class NotesView : public QWidget {
    Q_OBJECT
  public:
    explicit NotesView(Theme& theme, QWidget* parent = nullptr);

    /// Begins at its top.
    void setText(const QString& text);
    QString text() const { return text_; }
    /// What is read out before the text.
    void setCaption(const QString& caption);
    /// How high the card with the whole text is at this width, but no more than `most`.
    int heightForText(int width, int most) const;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void recolor();

    Theme& theme_;
    QPlainTextEdit* reader_;
    QString text_;
    bool showsFocus_ = false;  ///< the user moved it here by the keyboard
};

}  // namespace orlix
