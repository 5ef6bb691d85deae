#include "ui/panel/empty_tab.h"

#include <QPainter>

#include "l10n/extra_texts.h"
#include "l10n/localization_manager.h"
#include "ui/controls/text_label.h"

namespace orlix {

namespace {
constexpr int symbolSize = 40;
}

EmptyTab::EmptyTab(Icon icon, const PanelContext& context, QWidget* parent)
    : QWidget(parent),
      icon_(icon),
      context_(context),
      text_(new TextLabel(TextStyle::body, ColorRole::secondary, context.theme, this)) {
    text_->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    retranslate();
    connect(&context_.loc, &LocalizationManager::changed, this, &EmptyTab::retranslate);
    connect(&context_.theme, &Theme::changed, this, qOverload<>(&QWidget::update));
}

void EmptyTab::retranslate() {
    text_->setText(extraText(context_.loc.currentLanguage(), ExtraText::laterTab));
    arrange();
}

void EmptyTab::arrange() {
    const int room = width() - 2 * metrics::space6;
    text_->setGeometry(metrics::space6, height() / 2 + metrics::space1, room, text_->heightForWidth(room));
}

void EmptyTab::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

void EmptyTab::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setOpacity(0.6);
    painter.drawPixmap(
        QPointF((width() - symbolSize) / 2.0, height() / 2.0 - symbolSize - metrics::space2),
        iconPixmap(icon_, context_.theme.color(ColorRole::secondary), symbolSize, devicePixelRatioF()));
}

}  // namespace orlix
