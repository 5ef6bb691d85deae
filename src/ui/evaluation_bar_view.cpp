#include "ui/evaluation_bar_view.h"

#include <QEasingCurve>
#include <QElapsedTimer>
#include <QFontDatabase>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTimer>
#include <QtMath>
#include <utility>

#include "ui/theme.h"

namespace orlix {

namespace {

constexpr int barWidth = 32;
constexpr qreal cornerRadius = 6;
constexpr int labelFontSize = 11;
constexpr qreal labelPadding = 4;
constexpr qreal plateInset = 2;
constexpr qreal plateRadius = 4;
constexpr qreal plateSidePadding = 1;
constexpr QColor rim(255, 255, 255, 38);  // the line inside the edge, laid over both segments
constexpr int animationMs = 250;
constexpr int frameMs = 33;

QColor darkColor() {
    return QColor::fromRgbF(0.18f, 0.20f, 0.22f);
}
QColor lightColor() {
    return QColor::fromRgbF(0.95f, 0.95f, 0.92f);
}

}  // namespace

class EvaluationBarView::Impl {
  public:
    explicit Impl(EvaluationBarView& owner) : view(owner), frames(new QTimer(&owner)) {
        font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setPixelSize(labelFontSize);
        font.setWeight(QFont::Bold);
        frames->setInterval(frameMs);
        frames->setTimerType(Qt::CoarseTimer);
        connect(frames, &QTimer::timeout, &view, [this] { advance(); });
    }

    /// The light segment's height for `fraction`, in whole device pixels: its edge is always crisp.
    int lightPixels(double fraction) const { return qRound(fraction * view.height() * ratio()); }
    qreal ratio() const { return view.devicePixelRatioF(); }
    bool hasWhiteText() const { return target < 0.5; }

    void describe() {
        view.setAccessibleName(caption.isEmpty() ? label : caption + QStringLiteral(": ") + label);
    }
    void moveTo(double fraction);
    void show(double fraction);
    void advance();
    QRectF plateRect() const;
    void paintSegments(QPainter& painter, const QRect& dirty) const;
    void paintLabel(QPainter& painter) const;

    EvaluationBarView& view;
    QFont font;
    QString label = QStringLiteral("0.00");
    QString caption;
    bool isFlipped = false;
    bool isAnimated = true;
    double target = 0.5;  ///< the light segment's share of the height
    double shown = 0.5;   ///< the same, on the way to the target
    double start = 0.5;   ///< where the motion under way began
    QElapsedTimer elapsed;
    QTimer* frames;  ///< child of the view; runs during a motion only
};

void EvaluationBarView::Impl::moveTo(double fraction) {
    target = fraction;
    const bool isVisibleChange = lightPixels(shown) != lightPixels(target);
    if (!isAnimated || !view.isVisible() || !isVisibleChange) {
        frames->stop();
        show(target);
        return;
    }
    start = shown;
    elapsed.start();
    frames->start();
}

// Only the strip that the edge has crossed is painted again.
void EvaluationBarView::Impl::show(double fraction) {
    const int before = lightPixels(std::exchange(shown, fraction));
    const int after = lightPixels(shown);
    if (before == after) return;
    const qreal top = view.height() - qMax(before, after) / ratio();
    const qreal bottom = view.height() - qMin(before, after) / ratio();
    view.update(QRectF(0, top, view.width(), bottom - top).toAlignedRect());
}

void EvaluationBarView::Impl::advance() {
    static const QEasingCurve curve(QEasingCurve::InOutQuad);
    const double progress = qMin(1.0, double(elapsed.elapsed()) / animationMs);
    if (progress >= 1) frames->stop();
    show(progress >= 1 ? target : start + (target - start) * curve.valueForProgress(progress));
}

QRectF EvaluationBarView::Impl::plateRect() const {
    const qreal height = QFontMetricsF(font).capHeight() + 2 * labelPadding;
    const qreal top = isFlipped ? plateInset : view.height() - plateInset - height;
    return {plateInset, top, view.width() - 2 * plateInset, height};
}

void EvaluationBarView::Impl::paintSegments(QPainter& painter, const QRect& dirty) const {
    const QRectF bar = view.rect();
    const qreal scale = painter.deviceTransform().m22();
    const qreal edge = bar.bottom() - qRound(shown * bar.height() * scale) / scale;
    const bool isRound = dirty.top() < cornerRadius || dirty.bottom() >= bar.bottom() - cornerRadius;
    const bool isPixelExact = scale == qRound(scale);
    QPainterPath shape;
    if (isRound || !isPixelExact) shape.addRoundedRect(bar, cornerRadius, cornerRadius);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const auto paintSegment = [&](const QRectF& segment, const QColor& color) {
        if (shape.isEmpty()) {
            // Between the corners everything is upright: no outline has to be drawn for a moving edge.
            painter.fillRect(segment, blended(rim, color));
            painter.fillRect(segment.adjusted(1, 0, -1, 0), color);
            return;
        }
        painter.save();
        painter.setClipRect(segment, Qt::IntersectClip);
        painter.fillPath(shape, color);
        painter.setPen(blended(rim, color));
        painter.drawRoundedRect(bar.adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius - 0.5, cornerRadius - 0.5);
        painter.restore();
    };
    paintSegment(QRectF(bar.topLeft(), QPointF(bar.right(), edge)), darkColor());
    paintSegment(QRectF(QPointF(bar.left(), edge), bar.bottomRight()), lightColor());
}

void EvaluationBarView::Impl::paintLabel(QPainter& painter) const {
    const QRectF plate = plateRect();
    painter.setPen(Qt::NoPen);
    painter.setBrush(hasWhiteText() ? darkColor() : lightColor());
    painter.drawRoundedRect(plate, plateRadius, plateRadius);
    // The bar is narrower than five bold digits in many fonts: the text is then squeezed sideways, its height
    // stays.
    const QFontMetricsF fontMetrics(font);
    const qreal textWidth = fontMetrics.horizontalAdvance(label);
    const qreal room = plate.width() - 2 * plateSidePadding;
    const qreal squeeze = textWidth > room ? room / textWidth : 1;
    painter.setFont(font);
    painter.setPen(hasWhiteText() ? Qt::white : Qt::black);
    painter.translate(plate.center().x(), plate.center().y() + fontMetrics.capHeight() / 2);
    painter.scale(squeeze, 1);
    painter.drawText(QPointF(-textWidth / 2, 0), label);
}

EvaluationBarView::EvaluationBarView(QWidget* parent)
    : QWidget(parent), impl_(std::make_unique<Impl>(*this)) {
    setFixedWidth(barWidth);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    impl_->describe();
}

EvaluationBarView::~EvaluationBarView() = default;

void EvaluationBarView::setValues(const EngineEvaluation& evaluation, PieceColor turn, bool isFlipped) {
    const double whiteShare = evaluation.evalBarFraction(turn);
    const double fraction = isFlipped ? 1 - whiteShare : whiteShare;
    const QString label = evaluation.formattedScore();
    const bool hadWhiteText = impl_->hasWhiteText();
    if (fraction != impl_->target) impl_->moveTo(fraction);

    if (isFlipped != impl_->isFlipped) {
        impl_->isFlipped = isFlipped;
        impl_->label = label;
        update();
    } else if (label != impl_->label || hadWhiteText != impl_->hasWhiteText()) {
        impl_->label = label;
        update(impl_->plateRect().toAlignedRect());
    } else {
        return;
    }
    impl_->describe();
}

void EvaluationBarView::setCaption(const QString& caption) {
    impl_->caption = caption;
    impl_->describe();
}

void EvaluationBarView::setAnimated(bool animated) {
    impl_->isAnimated = animated;
    if (!animated) {
        impl_->frames->stop();
        impl_->show(impl_->target);
    }
}

QSize EvaluationBarView::sizeHint() const {
    return {barWidth, 672};
}

void EvaluationBarView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    impl_->paintSegments(painter, event->rect());
    if (event->rect().intersects(impl_->plateRect().toAlignedRect())) impl_->paintLabel(painter);
}

}  // namespace orlix
