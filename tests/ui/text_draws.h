// A paint device that draws nothing and keeps what texts it was asked to draw, wherever they would stand:
// what a view's paint event costs, without a clock.
#pragma once

#include <QPaintDevice>
#include <QPaintEngine>
#include <QStringList>
#include <QWidget>

namespace orlix::test {

class TextDraws : public QPaintDevice {
  public:
    /// As large and as dense as `widget`, so that fonts have the same size.
    explicit TextDraws(QWidget& widget) : widget_(widget) { widget.render(this); }

    /// Every run of text in the order of drawing, also those outside the picture.
    const QStringList& texts() const { return engine_.texts; }

    QPaintEngine* paintEngine() const override { return &engine_; }

  protected:
    int metric(PaintDeviceMetric metric) const override {
        switch (metric) {
            case PdmWidth: return widget_.width();
            case PdmHeight: return widget_.height();
            case PdmWidthMM: return widget_.widthMM();
            case PdmHeightMM: return widget_.heightMM();
            case PdmDpiX:
            case PdmPhysicalDpiX: return widget_.logicalDpiX();
            case PdmDpiY:
            case PdmPhysicalDpiY: return widget_.logicalDpiY();
            case PdmDepth: return widget_.depth();
            case PdmDevicePixelRatio: return 1;
            case PdmDevicePixelRatioScaled: return static_cast<int>(devicePixelRatioFScale());
            default: return QPaintDevice::metric(metric);
        }
    }

  private:
    class Engine : public QPaintEngine {
      public:
        Engine() : QPaintEngine(AllFeatures) {}
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState&) override {}
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
        void drawPath(const QPainterPath&) override {}
        void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
        void drawTextItem(const QPointF&, const QTextItem& item) override { texts.append(item.text()); }
        Type type() const override { return User; }

        QStringList texts;
    };

    QWidget& widget_;
    mutable Engine engine_;
};

}  // namespace orlix::test
