// What lines up in the panel: columns, edges, base lines and hairlines, measured on geometry and pixels.
#include <QHBoxLayout>
#include <QScrollBar>

#include "panel_fixture.h"
#include "ui/controls/card.h"
#include "ui/controls/column_widths.h"
#include "ui/controls/picker_button.h"
#include "ui/controls/text_label.h"
#include "ui/controls/toggle_switch.h"
#include "ui/controls/value_slider.h"
#include "ui/panel/bottom_bar.h"
#include "ui/panel/elided_label.h"
#include "ui/panel/panel_header.h"
#include "ui/panel/scroll_page.h"
#include "ui/panel/tab_bar.h"

namespace orlix::test {
namespace {

/// `widget` alone on a transparent ground, at a pixel ratio.
QImage pictureOf(QWidget& widget, int ratio) {
    QImage image(widget.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

TEST(ColumnWidths, allAreTheSameButThoseThatNeedMore) {
    const struct {
        QList<qreal> needs;
        qreal room;
        QList<qreal> widths;
    } cases[] = {
        {{10, 20, 30}, 120, {40, 40, 40}},
        {{10, 20, 60}, 120, {30, 30, 60}},
        {{10, 45, 60}, 120, {15, 45, 60}},
        {{20, 40, 60}, 120, {20, 40, 60}},
        {{50, 40, 60}, 120, {40, 40, 40}},
        {{90}, 120, {120}},
        {{130}, 120, {120}},
    };
    for (const auto& one : cases)
        EXPECT_EQ(columnWidths(one.needs, one.room), one.widths) << one.needs.last() << " of " << one.room;
}

class PanelAlignment : public PanelTest {
  protected:
    void forEveryLanguageAndWidth(const std::function<void(const std::string& where)>& body) {
        for (const Language language : allLanguages) {
            loc->setCurrentLanguage(language);
            for (const int width : {400, 460}) {
                panel->resize(width, 800);
                QCoreApplication::sendPostedEvents();
                body(utf8(displayName(language)) + " " + std::to_string(width));
            }
        }
    }
};

TEST_F(PanelAlignment, theLabelsOfTheBarsStandInFullSizeInEveryLanguage) {
    forEveryLanguageAndWidth([this](const std::string& where) {
        for (const QWidget* bar : {static_cast<QWidget*>(panel->findChild<BottomBar*>()),
                                   static_cast<QWidget*>(panel->findChild<TabBar*>())}) {
            for (const auto* button : bar->findChildren<PanelButton*>())
                EXPECT_GE(button->width(), button->leastWidth()) << where << ": " << utf8(button->label());
        }
    });
}

TEST_F(PanelAlignment, theBarsFillThePanelBetweenEqualMargins) {
    forEveryLanguageAndWidth([this](const std::string& where) {
        for (const QWidget* bar : {static_cast<QWidget*>(panel->findChild<BottomBar*>()),
                                   static_cast<QWidget*>(panel->findChild<TabBar*>())}) {
            const auto buttons = bar->findChildren<PanelButton*>();
            EXPECT_EQ(buttons.first()->x(), bar->width() - buttons.last()->geometry().right() - 1) << where;
            const int gap = buttons[1]->x() - buttons[0]->geometry().right();
            for (qsizetype index = 1; index < buttons.size(); ++index) {
                const int here = buttons[index]->x() - buttons[index - 1]->geometry().right();
                EXPECT_NEAR(here, gap, 1) << where;
                EXPECT_GE(here, 1) << where;
            }
        }
    });
}

TEST_F(PanelAlignment, nothingInTheBarMovesWhenThePauseBecomesResume) {
    forEveryLanguageAndWidth([this](const std::string& where) {
        const auto edges = [this] {
            QList<QRect> places;
            for (const auto* button : panel->findChild<BottomBar*>()->findChildren<PanelButton*>())
                places.append(button->geometry());
            return places;
        };
        const QList<QRect> before = edges();
        game->togglePause();
        panel->resize(panel->width(), 790);
        const QList<QRect> after = edges();
        for (qsizetype index = 0; index < after.size(); ++index) {
            EXPECT_EQ(after[index].left(), before[index].left()) << where;
            EXPECT_EQ(after[index].width(), before[index].width()) << where;
        }
        game->togglePause();
    });
}

TEST_F(PanelAlignment, aBadgeOfTwoLinesIsNoWiderThanItsText) {
    playAgainstPerson();
    for (int round = 0; round < 2; ++round) {
        play("g1", "f3");
        play("g8", "f6");
        play("f3", "g1");
        play("f6", "g8");
    }
    int wrapped = 0;
    forEveryLanguageAndWidth([&](const std::string& where) {
        const auto* badge = panel->findChild<StatusBadge*>();
        const ShownText shown = badge->shownTexts().first();
        EXPECT_LE(shown.needed.width(), shown.room.width()) << where;
        EXPECT_LE(shown.room.width() - shown.needed.width(), 2.5) << where;
        if (badge->width() < badge->naturalWidth()) ++wrapped;
    });
    EXPECT_GT(wrapped, 0);
}

TEST_F(PanelAlignment, switchesAndSlidersReachTheEdgesOfWhatStandsAboveThem) {
    panel->setSelectedTab(3);
    find("opponentLimit")->setChecked(true);
    QCoreApplication::sendPostedEvents();
    const auto right = [this](const QWidget* widget) {
        return widget->mapTo(panel.get(), QPoint(widget->width(), 0)).x();
    };
    const auto* picker = find<PickerButton>("opponentEngine");
    EXPECT_EQ(right(find("opponentLimit")), right(picker));
    EXPECT_EQ(right(find<ValueSlider>("opponentElo")), right(picker));
    for (const int ratio : {1, 2}) {
        for (QWidget* control : {static_cast<QWidget*>(find("opponentLimit")),
                                 static_cast<QWidget*>(find<ValueSlider>("opponentElo"))}) {
            const QImage picture = pictureOf(*control, ratio);
            const int middle = picture.height() / 2;
            EXPECT_GT(qAlpha(picture.pixel(0, middle)), 0) << control->metaObject()->className();
            EXPECT_GT(qAlpha(picture.pixel(picture.width() - 1, middle)), 0)
                << control->metaObject()->className();
        }
    }
}

TEST_F(PanelAlignment, aNameStandsOnTheLineOfTheTextBesideIt) {
    QWidget row;
    auto* layout = new QHBoxLayout(&row);
    auto* name = new ElidedLabel(TextStyle::bodyStrong, ColorRole::text, theme, &row);
    auto* text = new TextLabel(TextStyle::body, ColorRole::text, theme, &row);
    for (QWidget* label : {static_cast<QWidget*>(name), static_cast<QWidget*>(text)})
        layout->addWidget(label);
    name->setText(QStringLiteral("HHH"));
    text->setSingleLine(true);
    text->setText(QStringLiteral("HHH"));
    row.resize(300, row.sizeHint().height());
    layout->activate();
    ASSERT_EQ(name->geometry().top(), text->geometry().top());
    ASSERT_EQ(name->height(), text->height());
    for (const int ratio : {1, 2}) {
        const auto lowestInk = [ratio](QWidget& label) {
            const QImage picture = pictureOf(label, ratio);
            for (int y = picture.height() - 1; y >= 0; --y) {
                for (int x = 0; x < picture.width(); ++x)
                    if (qAlpha(picture.pixel(x, y)) > 128) return y;
            }
            return -1;
        };
        EXPECT_EQ(lowestInk(*name), lowestInk(*text)) << ratio;
    }
}

TEST_F(PanelAlignment, aHairlineTellsThatThePageGoesOnBelowItsEnd) {
    for (const int tab : {3, 4}) {
        panel->setSelectedTab(tab);
        panel->resize(400, 400);
        QCoreApplication::sendPostedEvents();
        auto* shownEdge = [this]() -> ScrollPageEdge* {
            for (auto* edge : panel->findChildren<ScrollPageEdge*>())
                if (edge->isVisible()) return edge;
            return nullptr;
        }();
        ASSERT_NE(shownEdge, nullptr) << tab;
        auto* bar = shownEdge->parentWidget()->findChild<ScrollPage*>()->verticalScrollBar();
        ASSERT_GT(bar->maximum(), 0) << tab;
        const auto isDrawn = [shownEdge] { return qAlpha(pictureOf(*shownEdge, 1).pixel(50, 0)) > 0; };
        EXPECT_TRUE(isDrawn()) << tab;
        bar->setValue(bar->maximum());
        EXPECT_FALSE(isDrawn()) << tab;
    }
}

}  // namespace
}  // namespace orlix::test
