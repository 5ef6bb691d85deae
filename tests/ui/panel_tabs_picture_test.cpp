#include <QDir>
#include <QLineEdit>
#include <functional>

#include "panel_tabs_fixture.h"
#include "ui/panel/engine_row.h"
#include "ui/panel/engines_tab.h"

namespace orlix::test {
namespace {

using PanelTabPictures = PanelTabsTest;

/// Paints the three tabs, empty and full; with ORLIX_PICTURES the pictures are kept in that folder, for
/// looking at. QT_SCALE_FACTOR sets the pixel ratio.
TEST_F(PanelTabPictures, theTabsArePaintedInBothSchemes) {
    const QString folder = qEnvironmentVariable("ORLIX_PICTURES");
    if (!folder.isEmpty()) QDir().mkpath(folder);
    int counter = 0;
    QString prefix;
    const auto keep = [&](const char* name) {
        settle();
        QCoreApplication::processEvents();
        const QPixmap picture = panel->grab();
        QSet<QRgb> colors;
        const QImage image = picture.toImage();
        for (int y = 0; y < image.height(); y += 2) {
            for (int x = 0; x < image.width(); x += 2)
                colors.insert(image.pixel(x, y));
        }
        EXPECT_GT(colors.size(), 20) << utf8(prefix) << name;
        if (!folder.isEmpty())
            picture.save(folder + u'/' + prefix + QString::fromLatin1(name) + QStringLiteral(".png"));
        ++counter;
    };
    // Every language and width in both schemes; the fullest states only once a combination.
    const auto forEveryLook = [&](const std::function<void()>& body) {
        for (const auto scheme : {Theme::Scheme::light, Theme::Scheme::dark}) {
            theme.setScheme(scheme);
            for (const Language language : allLanguages) {
                loc->setCurrentLanguage(language);
                for (const int width : {400, 460}) {
                    panel->resize(width, 832);
                    prefix =
                        QStringLiteral("%1-%2-%3-%4x-")
                            .arg(rawValue(language), scheme == Theme::Scheme::light ? QStringLiteral("light")
                                                                                    : QStringLiteral("dark"))
                            .arg(width)
                            .arg(panel->devicePixelRatioF());
                    body();
                }
            }
        }
    };
    forEveryLook([&] {
        panel->setSelectedTab(1);
        keep("a-analysis-empty");
        panel->setSelectedTab(4);
        keep("b-engines-empty");
    });
    playAgainstEngine();
    game->updateBlackElo(true, 1800);
    say("info depth 21 seldepth 30 multipv 1 score cp 34 nodes 12345678 nps 1504321 time 8204 pv "
        "e7e5 g1f3 b8c6 f1b5 a7a6 b5a4 g8f6 e1g1 f8e7 f1e1 b7b5 a4b3 d7d6 c2c3 e8g8");
    forEveryLook([&] {
        panel->setSelectedTab(1);
        keep("c-analysis");
        panel->setSelectedTab(4);
        keep("d-engines");
        auto* row = panel->findChild<EnginesTab*>()->rows().first();
        row->setEditing(true);
        engines->updateEngineConfig(row->engine().id, true, 2200);
        row->setEditing(true);
        click(row->findChild<QAbstractButton*>(QStringLiteral("testEngine")));
        auto* outcome = row->findChild<TextLabel*>(QStringLiteral("testOutcome"));
        EXPECT_TRUE(eventually([&] { return outcome->text().startsWith(QStringLiteral("Test OK")); }));
        keep("e-engines-editing");
        engines->updateEngineConfig(row->engine().id, false, 2200);
        row->setEditing(false);
        panel->setSelectedTab(5);
        find<QLineEdit>("fenInput")->clear();
        keep("f-export");
        find<QLineEdit>("fenInput")->setText(QStringLiteral("not a position"));
        click(find("loadFen"));
        keep("g-export-refused");
    });
    playBetweenEngines();
    game->updateWhiteElo(true, 1400);
    puppets.engines().at(puppets.engines().size() - 2).onOutput("info depth 9 score mate -4 pv e2e4\n");
    panel->setSelectedTab(1);
    forEveryLook([&] { keep("h-analysis-two"); });
    EXPECT_EQ(counter, 16 * 8);
}

}  // namespace
}  // namespace orlix::test
