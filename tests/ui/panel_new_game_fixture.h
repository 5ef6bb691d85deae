// The tab that starts games, opened over fakes of the platform.
#pragma once

#include "panel_fixture.h"
#include "ui/controls/picker_button.h"
#include "ui/controls/text_label.h"
#include "ui/controls/value_slider.h"

namespace orlix::test {

enum Modes { humanVsEngine, engineVsEngine, humanVsHuman };
enum Colors { white, black, random };
enum Thinking { gameClock, fixedMoveTime, fixedDepth };

class PanelNewGame : public PanelTest {
  protected:
    void SetUp() override {
        PanelTest::SetUp();
        panel->setSelectedTab(3);
    }
    void openAgain() const {
        panel->setSelectedTab(0);
        panel->setSelectedTab(3);
    }
    void pick(const char* picker, int index) const {
        auto* button = find<PickerButton>(picker);
        click(button);
        ASSERT_TRUE(button->popup());
        click(button->popup()->findChildren<PanelButton*>().at(index));
    }
    /// Drags the knob of a slider to `value`.
    void drag(const char* name, int value) const {
        auto* slider = find<ValueSlider>(name);
        QTest::mousePress(slider, Qt::LeftButton, {}, slider->knobCenter(slider->value()).toPoint());
        QTest::mouseMove(slider, slider->knobCenter(value).toPoint());
        QTest::mouseRelease(slider, Qt::LeftButton, {}, slider->knobCenter(value).toPoint());
    }
    QString label(const char* name) const { return find<TextLabel>(name)->text(); }
    bool isShown(const char* name) const {
        const auto* widget = panel->findChild<QWidget*>(QString::fromLatin1(name));
        return widget && widget->isVisible();
    }
};

}  // namespace orlix::test
