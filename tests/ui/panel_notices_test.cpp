#include <QLineEdit>

#include "panel_tabs_fixture.h"
#include "ui/panel/toast.h"

namespace orlix::test {
namespace {

/// What assistive technology is told without asking.
class PanelNotices : public PanelTabsTest {
  protected:
    void SetUp() override {
        PanelTabsTest::SetUp();
        listener.isListening = true;
    }
    /// Each of the ways in which a platform hears of news, once, about a notice that can be seen.
    void expectToldOnce(const QString& text) {
        std::vector<QAccessible::Event> types;
        for (const NoticeListener::Heard& each : listener.heard) {
            types.push_back(each.type);
            EXPECT_EQ(each.name, text);
            EXPECT_TRUE(each.isVisible);
        }
        EXPECT_THAT(types, testing::UnorderedElementsAre(QAccessible::ObjectShow, QAccessible::Alert,
                                                         QAccessible::NameChanged))
            << utf8(text);
        listener.heard.clear();
    }
    void load(const char* fen) const {
        auto* field = find<QLineEdit>("fenInput");
        field->setText(QString::fromLatin1(fen));
        QTest::keyClick(field, Qt::Key_Return);
    }
};

TEST_F(PanelNotices, aToastIsReadOutWhenItAppears) {
    panel->showToast(QStringLiteral("Copied to clipboard!"));
    expectToldOnce(QStringLiteral("Copied to clipboard!"));
}

TEST_F(PanelNotices, aToastThatFollowsAnotherIsReadOutAsWell) {
    for (const char* text : {"One", "Two", "Two"}) {
        panel->showToast(QString::fromLatin1(text));
        expectToldOnce(QString::fromLatin1(text));
    }
}

TEST_F(PanelNotices, aToastTellsNothingWhenItGoes) {
    panel->showToast(QStringLiteral("One"));
    listener.heard.clear();
    time.advance(3s);
    EXPECT_TRUE(pumpUntil([this] { return !panel->findChild<Toast*>()->isVisible(); }));
    EXPECT_TRUE(listener.heard.empty());
}

TEST_F(PanelNotices, aRefusedPositionIsReadOutEachTimeItIsTried) {
    panel->setSelectedTab(5);
    load("nonsense");
    expectToldOnce(QStringLiteral("Invalid FEN string."));
    QTest::keyClick(find<QLineEdit>("fenInput"), Qt::Key_Return);
    expectToldOnce(QStringLiteral("Invalid FEN string."));
}

TEST_F(PanelNotices, aPositionThatIsTakenIsReadOutAsItsToastAlone) {
    panel->setSelectedTab(5);
    load("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
    expectToldOnce(QStringLiteral("FEN loaded successfully."));
}

TEST_F(PanelNotices, typingAfterARefusalTellsNothing) {
    panel->setSelectedTab(5);
    load("nonsense");
    listener.heard.clear();
    QTest::keyClicks(find<QLineEdit>("fenInput"), QStringLiteral("4k3"));
    EXPECT_FALSE(find<TextLabel>("invalidFen")->isVisible());
    EXPECT_TRUE(listener.heard.empty());
}

TEST_F(PanelNotices, whereNobodyListensANoticeIsJustShown) {
    listener.isListening = false;
    panel->showToast(QStringLiteral("One"));
    EXPECT_TRUE(panel->findChild<Toast*>()->isVisible());
    EXPECT_TRUE(listener.heard.empty());
}

}  // namespace
}  // namespace orlix::test
