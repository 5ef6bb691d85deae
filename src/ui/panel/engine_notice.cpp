#include "ui/panel/engine_notice.h"

#include <QVBoxLayout>

#include "l10n/extra_texts.h"
#include "l10n/localization_manager.h"
#include "ui/controls/panel_button.h"
#include "ui/controls/text_label.h"

namespace orlix {

EngineNotice::EngineNotice(const PanelContext& context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      text_(new TextLabel(TextStyle::body, ColorRole::text, context.theme, this)),
      add_(new PanelButton(PanelButton::Look::primary, PanelButton::Arrangement::row, context.theme, this)) {
    add_->setSymbol(Icon::add);
    add_->setObjectName(QStringLiteral("addEngine"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(metrics::space3);
    layout->addWidget(text_);
    layout->addWidget(add_);
    retranslate();
    connect(add_, &QAbstractButton::clicked, this, &EngineNotice::addRequested);
    connect(&context_.loc, &LocalizationManager::changed, this, &EngineNotice::retranslate);
}

void EngineNotice::retranslate() {
    text_->setText(extraText(context_.loc.currentLanguage(), ExtraText::noEngineRegistered));
    add_->setLabel(context_.loc.text("add_engine"));
}

}  // namespace orlix
