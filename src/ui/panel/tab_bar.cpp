#include "ui/panel/tab_bar.h"

#include <QtMath>

#include "l10n/localization_manager.h"
#include "ui/controls/column_widths.h"
#include "ui/controls/panel_button.h"
#include "ui/theme.h"

namespace orlix {

namespace {

struct Tab {
    const char* titleKey;
    Icon icon;
};
constexpr Tab tabs[] = {
    {"tab_game", Icon::gameState},   {"tab_engine", Icon::engine},   {"tab_automatch", Icon::automatch},
    {"tab_new_game", Icon::newGame}, {"tab_engines", Icon::engines}, {"tab_export", Icon::exportNotation},
};
constexpr int tabCount = static_cast<int>(std::size(tabs));
constexpr int margin = 6;

}  // namespace

TabBar::TabBar(const PanelContext& context, QWidget* parent) : QWidget(parent), context_(context) {
    for (int index = 0; index < tabCount; ++index) {
        auto* button =
            new PanelButton(PanelButton::Look::tab, PanelButton::Arrangement::column, context.theme, this);
        button->setSymbol(tabs[index].icon);
        button->setObjectName(QString::fromLatin1(tabs[index].titleKey));
        button->setCheckable(true);
        button->setAutoExclusive(true);
        connect(button, &QAbstractButton::clicked, this, [this, index] {
            setCurrentIndex(index);
            Q_EMIT chosen(index);
        });
        buttons_.append(button);
    }
    retranslate();
    setCurrentIndex(0);
    connect(&context_.loc, &LocalizationManager::changed, this, &TabBar::retranslate);
}

void TabBar::setCurrentIndex(int index) {
    buttons_[index]->setChecked(true);
    for (PanelButton* button : buttons_)
        button->setFocusPolicy(button->isChecked() ? Qt::TabFocus : Qt::NoFocus);
}

void TabBar::retranslate() {
    for (int index = 0; index < tabCount; ++index)
        buttons_[index]->setLabel(context_.loc.text(tabs[index].titleKey));
    arrange();
}

/// All as wide, but for a title with a word that is wider: it stands in the same type as the others.
QList<QRect> TabBar::places(int width) const {
    QList<qreal> needs;
    for (const PanelButton* button : buttons_)
        needs.append(button->leastWidth());
    QList<QRect> places;
    qreal left = margin;
    for (const qreal wide : columnWidths(needs, width - 2.0 * margin)) {
        places.append(QRect(QPoint(qFloor(left), margin), QPoint(qFloor(left + wide) - 1, 0)));
        left += wide;
    }
    return places;
}

int TabBar::heightForWidth(int width) const {
    int height = 0;
    const QList<QRect> at = places(width);
    for (int index = 0; index < tabCount; ++index)
        height = qMax(height, buttons_[index]->heightForWidth(at[index].width()));
    return height + 2 * margin;
}

void TabBar::arrange() {
    QList<QRect> at = places(width());
    for (int index = 0; index < tabCount; ++index) {
        at[index].setHeight(height() - 2 * margin);
        buttons_[index]->setGeometry(at[index]);
    }
}

void TabBar::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

}  // namespace orlix
