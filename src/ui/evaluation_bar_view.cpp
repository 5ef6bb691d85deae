#include "ui/evaluation_bar_view.h"

#include <QEasingCurve>
#include <QElapsedTimer>
#include <QFontInfo>
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
constexpr int mostPictures = 5;  // of one motion
constexpr int smallestStep = 2;  // device pixels: less is not worth a picture of its own

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
        font = Theme::font(TextStyle::monospaced);
        font.setPixelSize(labelFontSize);
        font.setWeight(QFont::Bold);
        const QFontMetricsF metrics(font);
        capHeight = metrics.capHeight();
        if (QFontInfo(font).fixedPitch()) cellWidth = metrics.horizontalAdvance(u'0');
        setLabel(label);
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
    void setLabel(const QString& text) {
        label = text;
        labelWidth =
            cellWidth > 0 ? cellWidth * qreal(label.size()) : QFontMetricsF(font).horizontalAdvance(label);
    }
    void moveTo(double fraction);
    QRect stepTo(double fraction);
    double valueNow();
    void advance();
    bool reachesCorners(const QRect& area) const {
        return area.top() < cornerRadius || area.bottom() >= view.height() - cornerRadius;
    }
    QRectF plateRect() const;
    void paintSurroundings(QPainter& painter, const QRect& dirty) const;
    void paintSegments(QPainter& painter, const QRect& dirty) const;
    void paintLabel(QPainter& painter) const;

    EvaluationBarView& view;
    QFont font;
    qreal capHeight = 0;
    QString label = QStringLiteral("0.00");
    qreal labelWidth = 0;
    qreal cellWidth = 0;  ///< of every character; 0 where the fixed-width font is none
    QString caption;
    QColor ground;  ///< invalid: nothing is painted behind the corners
    QColor line;
    bool isFlipped = false;
    bool isAnimated = true;
    double target = 0.5;  ///< the light segment's share of the height
    double shown = 0.5;   ///< the same, on the way to the target
    double start = 0.5;   ///< where the motion under way began
    QElapsedTimer elapsed;
    QTimer* frames;  ///< child of the view; runs during a motion only
};

void EvaluationBarView::Impl::moveTo(double fraction) {
    if (frames->isActive()) view.update(stepTo(valueNow()));  // this step goes with the label's picture
    target = fraction;
    const int distance = qAbs(lightPixels(shown) - lightPixels(target));
    const int pictures = qMin(distance / smallestStep, mostPictures);
    // A way of one step, as most are while an engine searches, goes with the label's picture.
    if (!isAnimated || !view.isVisible() || pictures < 2) {
        frames->stop();
        view.update(stepTo(target));
        return;
    }
    start = shown;
    elapsed.start();
    frames->start((animationMs + pictures - 1) / pictures);
}

// What is to be painted again: only the strip that the edge has crossed.
QRect EvaluationBarView::Impl::stepTo(double fraction) {
    const int before = lightPixels(shown);
    const int after = lightPixels(fraction);
    if (qAbs(after - before) < smallestStep && fraction != target) return {};
    shown = fraction;
    if (before == after) return {};
    const qreal top = view.height() - qMax(before, after) / ratio();
    const qreal bottom = view.height() - qMin(before, after) / ratio();
    return QRectF(0, top, view.width(), bottom - top).toAlignedRect();
}

double EvaluationBarView::Impl::valueNow() {
    static const QEasingCurve curve(QEasingCurve::InOutQuad);
    const double progress = qMin(1.0, double(elapsed.elapsed()) / animationMs);
    if (progress >= 1) frames->stop();
    return progress >= 1 ? target : start + (target - start) * curve.valueForProgress(progress);
}

void EvaluationBarView::Impl::advance() {
    const QRect step = stepTo(valueNow());
    // At once: a posted request would cost another turn of the event loop.
    if (!step.isEmpty()) view.repaint(step);
}

QRectF EvaluationBarView::Impl::plateRect() const {
    const qreal height = capHeight + 2 * labelPadding;
    const qreal top = isFlipped ? plateInset : view.height() - plateInset - height;
    return {plateInset, top, view.width() - 2 * plateInset, height};
}

void EvaluationBarView::Impl::paintSurroundings(QPainter& painter, const QRect& dirty) const {
    if (!ground.isValid()) return;
    painter.fillRect(dirty, ground);
    if (!reachesCorners(dirty)) return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(line);
    painter.drawRoundedRect(QRectF(view.rect()).adjusted(-0.5, -0.5, 0.5, 0.5), cornerRadius, cornerRadius);
}

void EvaluationBarView::Impl::paintSegments(QPainter& painter, const QRect& dirty) const {
    const QRectF bar = view.rect();
    const qreal scale = painter.deviceTransform().m22();
    const qreal edge = bar.bottom() - qRound(shown * bar.height() * scale) / scale;
    const bool isRound = reachesCorners(dirty);
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
    const qreal room = plate.width() - 2 * plateSidePadding;
    const qreal squeeze = labelWidth > room ? room / labelWidth : 1;
    painter.setFont(font);
    painter.setPen(hasWhiteText() ? Qt::white : Qt::black);
    painter.translate(plate.center().x(), plate.center().y() + capHeight / 2);
    painter.scale(squeeze, 1);
    painter.drawText(QPointF(-labelWidth / 2, 0), label);
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
        impl_->setLabel(label);
        update();
    } else if (label != impl_->label || hadWhiteText != impl_->hasWhiteText()) {
        impl_->setLabel(label);
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
        update(impl_->stepTo(impl_->target));
    }
}

void EvaluationBarView::setSurroundings(const QColor& ground, const QColor& line) {
    impl_->ground = ground;
    impl_->line = line;
    setAttribute(Qt::WA_OpaquePaintEvent, ground.isValid());
    update();
}

QSize EvaluationBarView::sizeHint() const {
    return {barWidth, 672};
}

void EvaluationBarView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    // The edge's strip and the label's plate are often far apart: what lies between them stays.
    for (const QRect& part : event->region()) {
        // Beyond its edges: at fractional pixel ratios they run through the middle of device pixels.
        const QRect dirty = part.adjusted(-1, -1, 1, 1);
        painter.save();
        painter.setClipRect(dirty);
        impl_->paintSurroundings(painter, dirty);
        impl_->paintSegments(painter, dirty);
        if (dirty.intersects(impl_->plateRect().toAlignedRect())) impl_->paintLabel(painter);
        painter.restore();
    }
}

}  // namespace orlix
