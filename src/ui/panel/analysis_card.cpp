#include "ui/panel/analysis_card.h"

#include <QPaintEvent>
#include <QPainter>
#include <array>

#include "l10n/localization_manager.h"
#include "ui/controls/text_label.h"
#include "ui/panel/elided_label.h"
#include "ui/panel/section_head.h"
#include "ui/theme.h"

namespace orlix {

namespace {

// Score, depth, nodes, speed: the last two run to many digits.
constexpr std::array<qreal, EvaluationFigures::figureCount> shares{0.22, 0.23, 0.31, 0.24};
constexpr std::array captionKeys{"engine_score", "engine_depth", "engine_nodes", "engine_nps"};
constexpr int captionHeight = 16;
constexpr int valueHeight = 24;
constexpr int figuresHeight = captionHeight + valueHeight;
constexpr int lineTop = figuresHeight + 10;
constexpr int lineRows = 2;
constexpr int cellGap = 6;
constexpr int smallestType = 9;

// More than two rows hold: an engine may send thousands of moves.
constexpr int mostLineCharacters = 400;

QString dash() {
    return QStringLiteral("\u2013");
}

QFont valueFont() {
    QFont font = Theme::font(TextStyle::bodyStrong);
    font.setPixelSize(15);
    return font;
}

int lineRowHeight() {
    return QFontMetrics(Theme::font(TextStyle::monospaced)).height();
}

}  // namespace

QString groupedNumber(qint64 number) {
    QString digits = QString::number(number);
    const qsizetype first = digits.startsWith(u'-') ? 1 : 0;
    for (qsizetype at = digits.size() - 3; at > first; at -= 3)
        digits.insert(at, QChar(0x202F));
    return digits;
}

EvaluationFigures::EvaluationFigures(const PanelContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setSizePolicy(policy);
    setEvaluation({});
    retranslate();
    connect(&context_.loc, &LocalizationManager::changed, this, &EvaluationFigures::retranslate);
    connect(&context_.theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void EvaluationFigures::setEvaluation(const EngineEvaluation& evaluation) {
    const auto number = [](const std::optional<qint64>& value) {
        return value ? groupedNumber(*value) : dash();
    };
    const bool hasScore = evaluation.mateIn || evaluation.scoreCp;
    const QStringList values{hasScore ? evaluation.formattedScore() : dash(),
                             evaluation.depth != 0 ? groupedNumber(evaluation.depth) : dash(),
                             number(evaluation.nodes), number(evaluation.nps)};
    if (values != values_) {
        values_ = values;
        update(0, 0, width(), figuresHeight);
        describe();
    }
    QString line;
    for (const QString& move : evaluation.pv) {
        if (line.size() > mostLineCharacters) break;
        if (!line.isEmpty()) line += u' ';
        line += move;
    }
    if (line.isEmpty()) line = dash();
    if (line != line_) {
        line_ = line;
        update(0, lineTop, width(), height() - lineTop);
        breakLine();
        describe();
    }
}

void EvaluationFigures::describe() {
    QStringList parts;
    for (qsizetype index = 0; index < captions_.size(); ++index)
        parts.append(captions_[index] + u' ' + values_[index]);
    if (captions_.isEmpty()) return;
    setAccessibleName(parts.join(QStringLiteral(", ")));
    setAccessibleDescription(lineCaption_ + QStringLiteral(": ") + line_);
}

void EvaluationFigures::retranslate() {
    captions_.clear();
    for (const char* key : captionKeys)
        captions_.append(context_.loc.text(key));
    lineCaption_ = context_.loc.text("engine_pv");
    describe();
    update();
}

QRectF EvaluationFigures::place(int index) const {
    qreal left = 0;
    for (int before = 0; before < index; ++before)
        left += shares[static_cast<std::size_t>(before)];
    const qreal share = shares[static_cast<std::size_t>(index)];
    return {left * width(), 0, share * width() - (index + 1 < figureCount ? cellGap : 0), figuresHeight};
}

void EvaluationFigures::breakLine() {
    // By counting characters: the face is monospaced, and an engine says this many times a second.
    const qreal advance = QFontMetricsF(Theme::font(TextStyle::monospaced)).horizontalAdvance(u'0');
    const qsizetype columns = qMax<qsizetype>(8, static_cast<qsizetype>(width() / advance));
    rows_.clear();
    QString row;
    bool isWhole = true;
    for (const QString& move : line_.split(u' ')) {
        const bool isLast = rows_.size() + 1 == lineRows;
        // The last row keeps room for the mark that there is more.
        const qsizetype room = columns - (isLast ? 2 : 0);
        if (!row.isEmpty() && row.size() + 1 + move.size() > room) {
            if (isLast) {
                isWhole = false;
                break;
            }
            rows_.append(row);
            row.clear();
        }
        if (!row.isEmpty()) row += u' ';
        row += move;
    }
    rows_.append(isWhole ? row : row + QStringLiteral(" \u2026"));
    setToolTip(isWhole ? QString() : line_.toHtmlEscaped());
}

QList<ShownText> EvaluationFigures::shownTexts() const {
    QList<ShownText> texts;
    for (int index = 0; index < figureCount; ++index) {
        const QSizeF caption(place(index).width(), captionHeight);
        const QSizeF value(place(index).width(), valueHeight);
        const QFont captionFont =
            fittingFont(captions_[index], Theme::font(TextStyle::caption), caption, smallestType);
        texts.append({captions_[index], wrappedSize(captions_[index], captionFont, 10000), caption});
        const QFont font = fittingFont(values_[index], valueFont(), value, smallestType);
        texts.append({values_[index], QSizeF(tabularWidth(font, values_[index]), 1), value});
    }
    const QFontMetricsF metrics(Theme::font(TextStyle::monospaced));
    for (const QString& row : rows_) {
        const QSizeF room(width(), lineRowHeight());
        texts.append({row, QSizeF(metrics.horizontalAdvance(row), metrics.height()), room});
    }
    texts.append({lineCaption_, wrappedSize(lineCaption_, Theme::font(TextStyle::caption), 10000),
                  QSizeF(width(), captionHeight)});
    return texts;
}

QSize EvaluationFigures::sizeHint() const {
    return {300, lineTop + captionHeight + lineRows * lineRowHeight()};
}

QSize EvaluationFigures::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

void EvaluationFigures::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    breakLine();
}

void EvaluationFigures::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const Theme& theme = context_.theme;
    const QColor secondary = theme.color(ColorRole::secondary);
    const QColor text = theme.color(ColorRole::text);
    if (event->rect().top() < figuresHeight) {
        for (int index = 0; index < figureCount; ++index) {
            const QRectF cell = place(index);
            const QRectF caption(cell.left(), 0, cell.width(), captionHeight);
            const QRectF value(cell.left(), captionHeight, cell.width(), valueHeight);
            painter.setFont(
                fittingFont(captions_[index], Theme::font(TextStyle::caption), caption.size(), smallestType));
            painter.setPen(secondary);
            painter.drawText(caption, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                             captions_[index]);
            painter.setFont(fittingFont(values_[index], valueFont(), value.size(), smallestType));
            painter.setPen(text);
            drawTabularText(painter, value, Qt::AlignLeft | Qt::AlignVCenter, values_[index]);
        }
    }
    if (event->rect().bottom() >= lineTop) {
        painter.setFont(Theme::font(TextStyle::caption));
        painter.setPen(secondary);
        painter.drawText(QRectF(0, lineTop, width(), captionHeight),
                         Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, lineCaption_);
        painter.setFont(Theme::font(TextStyle::monospaced));
        painter.setPen(text);
        QRectF rowPlace(0, lineTop + captionHeight, width(), lineRowHeight());
        for (const QString& row : rows_) {
            painter.drawText(rowPlace, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, row);
            rowPlace.translate(0, lineRowHeight());
        }
    }
}

AnalysisCard::AnalysisCard(const PanelContext& context, QWidget* parent)
    : Card(context.theme, parent),
      context_(context),
      head_(new SectionHead(Icon::chart, context.theme, this)),
      engine_(new ElidedLabel(TextStyle::bodyStrong, ColorRole::accent, context.theme, this)),
      idle_(new TextLabel(TextStyle::body, ColorRole::secondary, context.theme, this)),
      figures_(new EvaluationFigures(context, this)) {
    engine_->setObjectName(QStringLiteral("thinkingEngine"));
    idle_->setObjectName(QStringLiteral("engineIdle"));
    content()->addWidget(head_);
    content()->addWidget(engine_);
    content()->addWidget(idle_);
    content()->addWidget(figures_);
    setThinkingEngine(std::nullopt);
    retranslate();
    connect(&context_.loc, &LocalizationManager::changed, this, &AnalysisCard::retranslate);
}

void AnalysisCard::setThinkingEngine(const std::optional<QString>& engineName) {
    if (engineName) engine_->setText(*engineName);
    engine_->setVisible(engineName.has_value());
    idle_->setVisible(!engineName);
}

void AnalysisCard::setEvaluation(const EngineEvaluation& evaluation) {
    figures_->setEvaluation(evaluation);
}

void AnalysisCard::retranslate() {
    const QString title = context_.loc.text("currently_thinking_engine");
    head_->setTitle(title);
    setAccessibleName(title);
    idle_->setText(context_.loc.text("engine_idle"));
}

}  // namespace orlix
