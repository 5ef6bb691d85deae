// Renders the states of the window that matter into PNG files, on the offscreen platform: the real window
// over fakes of the platform. `screenshots <folder>` renders at the process's pixel ratio, `screenshots
// --sheet <folder>` puts all pictures of a folder on contact sheets.
#include <QDir>
#include <QFileInfo>
#include <QPainter>
#include <QtMath>
#include <cstdio>
#include <functional>

#include "shell.h"
#include "ui/right_panel_view.h"

namespace orlix::test {
namespace {

const QStringList openGame{
    QStringLiteral("e2e4"), QStringLiteral("e7e5"), QStringLiteral("g1f3"), QStringLiteral("b8c6"),
    QStringLiteral("f1b5"), QStringLiteral("a7a6"), QStringLiteral("b5c6"), QStringLiteral("d7c6"),
    QStringLiteral("d2d4"), QStringLiteral("e5d4"), QStringLiteral("d1d4"), QStringLiteral("d8d4"),
    QStringLiteral("f3d4"), QStringLiteral("c8d7"), QStringLiteral("c1e3"), QStringLiteral("e8c8"),
    QStringLiteral("b1d2"), QStringLiteral("g8e7"), QStringLiteral("e1c1"), QStringLiteral("e7g6"),
    QStringLiteral("d4b3"), QStringLiteral("f8b4"), QStringLiteral("d2f3"), QStringLiteral("h8e8"),
    QStringLiteral("h2h4"), QStringLiteral("g6h4"), QStringLiteral("f3h4"), QStringLiteral("e8e4"),
    QStringLiteral("h4f3"), QStringLiteral("d7g4"), QStringLiteral("b3d4"),
};
const QStringList foolsMate{QStringLiteral("f2f3"), QStringLiteral("e7e5"), QStringLiteral("g2g4"),
                            QStringLiteral("d8h4")};

class Studio {
  public:
    explicit Studio(QString folder) : folder_(std::move(folder)) {}

    void renderAll() {
        renderStates();
        renderTabs();
        renderFullestViews();
    }

  private:
    using Scene = std::function<void(Shell&)>;

    static void play(Shell& shell, const QStringList& moves) {
        for (const QString& move : moves) {
            const QByteArray text = move.toLatin1();
            shell.game->handleSquareClick(*Square::fromText(text.left(2).toStdString()));
            shell.game->handleSquareClick(*Square::fromText(text.mid(2).toStdString()));
            shell.time.advance(std::chrono::milliseconds(3700));
        }
    }
    static void twoPeople(Shell& shell) {
        shell.buildWindow();
        shell.game->setGameMode(GameMode::humanVsHuman);
        shell.showWindow();
    }
    static void againstEngine(Shell& shell) {
        shell.installEngine();
        shell.showWindow();
    }
    static void thinking(Shell& shell) {
        againstEngine(shell);
        shell.click("e2");
        shell.click("e4");
        shell.eventually([&shell] { return shell.launcher.lastHeard("go "); });
        shell.launcher.say(
            "info depth 21 seldepth 30 multipv 1 score cp -38 nodes 1893201 nps 931420 time 2032 pv e7e5 "
            "g1f3 "
            "b8c6 f1b5 a7a6");
        shell.eventually([&shell] { return shell.game->liveEvaluation().depth == 21; });
        shell.time.advance(std::chrono::milliseconds(2100));
    }
    static void showTab(Shell& shell, int index) { shell.find<RightPanelView>()->setSelectedTab(index); }

    void render(const QString& name, const Scene& scene, Theme::Scheme scheme = Theme::Scheme::light,
                Language language = Language::english) {
        Shell shell;
        shell.theme.setScheme(scheme);
        shell.loc.setCurrentLanguage(language);
        scene(shell);
        QTest::qWait(50);  // what the views put off until the event loop runs
        const QString ratio = QString::number(shell.window->devicePixelRatioF());
        const QString file = QStringLiteral("%1/%2@%3x.png").arg(folder_, name, ratio);
        if (!shell.window->grab().save(file)) qFatal("cannot write %s", qPrintable(file));
        std::printf("%s\n", qPrintable(file));
    }

    void renderStates() {
        render(QStringLiteral("01-start"), againstEngine);
        render(QStringLiteral("02-selection"), [](Shell& shell) {
            twoPeople(shell);
            play(shell, openGame.mid(0, 8));
            shell.click("f3");
        });
        render(QStringLiteral("03-check"), [](Shell& shell) {
            twoPeople(shell);
            play(shell, {QStringLiteral("e2e4"), QStringLiteral("f7f6"), QStringLiteral("d1h5")});
        });
        render(QStringLiteral("04-promotion"), promotion);
        render(QStringLiteral("05-mate"), [](Shell& shell) {
            twoPeople(shell);
            play(shell, foolsMate);
        });
        render(QStringLiteral("06-inspecting"), [](Shell& shell) {
            twoPeople(shell);
            play(shell, openGame);
            shell.game->inspectMove(6);
        });
        render(QStringLiteral("07-thinking"), thinking);
        render(QStringLiteral("08-no-engine"), [](Shell& shell) { shell.showWindow(); });
        render(
            QStringLiteral("09-no-engine-dark"), [](Shell& shell) { shell.showWindow(); },
            Theme::Scheme::dark);
        render(QStringLiteral("10-paused-flipped"), [](Shell& shell) {
            twoPeople(shell);
            play(shell, openGame);
            shell.game->flipBoard();
            shell.game->togglePause();
        });
        render(QStringLiteral("11-low-time"), [](Shell& shell) {
            twoPeople(shell);
            play(shell, openGame.mid(0, 4));
            shell.time.advance(std::chrono::milliseconds(297'000));
        });
        render(QStringLiteral("12-smallest"), [](Shell& shell) {
            twoPeople(shell);
            play(shell, openGame);
            shell.window->resize(1120, 740);
        });
        render(QStringLiteral("13-wide"), [](Shell& shell) {
            twoPeople(shell);
            play(shell, openGame);
            shell.window->resize(1720, 1000);
        });
        render(QStringLiteral("14-toast"), [](Shell& shell) {
            twoPeople(shell);
            shell.find<RightPanelView>()->showToast(shell.loc.text("copied_to_clipboard"));
            QTest::qWait(400);
        });
    }

    static void promotion(Shell& shell) {
        twoPeople(shell);
        shell.game->loadFEN(QStringLiteral("2r3k1/1P3ppp/8/8/3q4/8/5PPP/1Q4K1 w - - 0 1"));
        shell.click("b7");
        shell.click("b8");
    }

    void renderTabs() {
        for (int tab = 0; tab < RightPanelView::tabCount; ++tab) {
            render(QStringLiteral("20-tab-%1").arg(tab), [tab](Shell& shell) {
                againstEngine(shell);
                showTab(shell, tab);
            });
        }
    }

    void renderFullestViews() {
        const std::vector<std::pair<QString, Scene>> views{
            {QStringLiteral("30-game"),
             [](Shell& shell) {
                 twoPeople(shell);
                 play(shell, openGame);
             }},
            {QStringLiteral("31-new-game"),
             [](Shell& shell) {
                 shell.installEngine();
                 shell.buildWindow();
                 shell.game->setGameMode(GameMode::engineVsEngine);
                 shell.game->setWhiteEngineLimit(true, 1750);
                 shell.showWindow();
                 showTab(shell, 3);
             }},
            {QStringLiteral("32-promotion"), promotion},
        };
        for (const auto& [name, scene] : views) {
            for (const Theme::Scheme scheme : {Theme::Scheme::light, Theme::Scheme::dark}) {
                for (const Language language : allLanguages) {
                    const QString schemeName =
                        scheme == Theme::Scheme::light ? QStringLiteral("light") : QStringLiteral("dark");
                    render(QStringLiteral("%1-%2-%3").arg(name, schemeName, rawValue(language)), scene,
                           scheme, language);
                }
            }
        }
    }

    QString folder_;
};

/// All pictures of `folder`, small, with their names, at most thirty a sheet.
void makeContactSheets(const QString& folder) {
    constexpr int columns = 5;
    constexpr int perSheet = 30;
    constexpr QSize cell(420, 320);
    const QStringList names = QDir(folder).entryList({QStringLiteral("[0-9]*.png")}, QDir::Files, QDir::Name);
    for (qsizetype first = 0; first < names.size(); first += perSheet) {
        const QStringList page = names.mid(first, perSheet);
        const int rows = qCeil(static_cast<double>(page.size()) / columns);
        QImage sheet(columns * cell.width(), rows * cell.height(), QImage::Format_RGB32);
        sheet.fill(Qt::gray);
        QPainter painter(&sheet);
        for (int index = 0; index < page.size(); ++index) {
            const QRect place(QPoint(index % columns * cell.width(), index / columns * cell.height()), cell);
            QImage picture(folder + QLatin1Char('/') + page[index]);
            picture.setDevicePixelRatio(1);
            const QImage small =
                picture.scaled(cell - QSize(16, 32), Qt::KeepAspectRatio, Qt::SmoothTransformation);
            painter.drawImage(place.topLeft() + QPoint(8, 8), small);
            painter.drawText(place.adjusted(8, 0, -8, -4), Qt::AlignBottom | Qt::AlignLeft, page[index]);
        }
        const QString file = QStringLiteral("%1/sheet-%2.png").arg(folder).arg(first / perSheet + 1);
        if (!sheet.save(file)) qFatal("cannot write %s", qPrintable(file));
        std::printf("%s\n", qPrintable(file));
    }
}

}  // namespace
}  // namespace orlix::test

int main(int argc, char** argv) {
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2 || !QFileInfo(arguments.last()).isDir()) {
        std::fputs("usage: screenshots [--sheet] <folder>\n", stderr);
        return 2;
    }
    if (arguments.contains(QStringLiteral("--sheet"))) {
        orlix::test::makeContactSheets(arguments.last());
    } else {
        orlix::test::Studio(arguments.last()).renderAll();
    }
    return 0;
}
