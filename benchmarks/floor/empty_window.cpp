// The floor under every start: a Qt program with one widget, as large as our window, that paints one colour
// and, with --text, one line of text, which is when Qt loads its fonts.
#include <QApplication>
#include <QPainter>
#include <QWidget>

namespace {

class EmptyWidget final : public QWidget {
  public:
    explicit EmptyWidget(const QString& text) : text_(text) {}

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), QColor(0xF3, 0xF3, 0xF0));
        if (!text_.isEmpty()) painter.drawText(rect(), Qt::AlignCenter, text_);
    }

  private:
    QString text_;
};

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const bool hasText = QApplication::arguments().contains(QLatin1String("--text"));
    EmptyWidget widget(hasText ? QStringLiteral("White to move") : QString());
    widget.resize(1280, 860);
    widget.show();
    return QApplication::exec();
}
