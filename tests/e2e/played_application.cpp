#include "e2e/played_application.h"

#include <QDir>
#include <QFile>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

#include "e2e/engine_registry.h"

namespace orlix::e2e {

namespace {

constexpr int windowLimitMs = 60000;
constexpr int controlLimitMs = 60000;
constexpr int mostWheelSteps = 30;
constexpr int lastMoveTolerance = 3;
// A picker's open list.
constexpr int listMargin = 6;
constexpr int listRowHeight = 32;

const QColor lightSquare(240, 219, 189);
const QColor darkSquare(181, 135, 97);

// A colour under the tint of the last move: yellow at 32 %.
QColor withLastMoveTint(const QColor& base) {
    const auto mix = [](int below, int above) { return qRound(below * 0.68 + above * 0.32); };
    return {mix(base.red(), 255), mix(base.green(), 204), mix(base.blue(), 0)};
}

bool isClose(const QColor& a, const QColor& b) {
    return std::abs(a.red() - b.red()) <= lastMoveTolerance &&
           std::abs(a.green() - b.green()) <= lastMoveTolerance &&
           std::abs(a.blue() - b.blue()) <= lastMoveTolerance;
}

bool canBeClicked(const AccessibleNode& node) {
    static const QStringList roles{QStringLiteral("push button"),   QStringLiteral("radio button"),
                                   QStringLiteral("check box"),     QStringLiteral("page tab"),
                                   QStringLiteral("toggle button"), QStringLiteral("slider"),
                                   QStringLiteral("button menu"),   QStringLiteral("combo box")};
    return node.isShowing && !node.area.isEmpty() && roles.contains(node.role);
}

QString promotionName(PieceType type) {
    switch (type) {
        case PieceType::queen: return QStringLiteral("Queen");
        case PieceType::rook: return QStringLiteral("Rook");
        case PieceType::bishop: return QStringLiteral("Bishop");
        case PieceType::knight: return QStringLiteral("Knight");
        case PieceType::king:
        case PieceType::pawn: break;
    }
    throw std::runtime_error("no pawn becomes that");
}

}  // namespace

PlayedApplication::PlayedApplication(Desktop& desktop, AccessibleTree& tree, const QString& program,
                                     const QList<PlayedEngine>& engines, const QStringList& variables)
    : desktop_(desktop), tree_(tree) {
    writeEngines(engines);

    QProcessEnvironment environment = desktop_.environment();
    environment.insert(QStringLiteral("HOME"), home_.path());
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home_.filePath(QStringLiteral(".config")));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), home_.filePath(QStringLiteral(".local/share")));
    environment.insert(QStringLiteral("XDG_CACHE_HOME"), home_.filePath(QStringLiteral(".cache")));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home_.path());
    environment.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("LANGUAGE"), QStringLiteral("en"));
    for (const QString& variable : variables)
        environment.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
    process_.setProcessEnvironment(environment);
    process_.setWorkingDirectory(home_.path());
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(program, {});
    const bool isShown = waitUntil(
        [&] {
            board_ = findBoard();
            return !board_.isEmpty();
        },
        windowLimitMs);
    if (!isShown) fail("the program shows no board");
    if (desktop_.isAccessible() && !waitUntil([&] { return tree_.nodes().size() > 10; }, windowLimitMs))
        fail("the program shows no accessible controls");
    board_ = findBoard();  // a window manager may have moved the window after its first picture
}

PlayedApplication::~PlayedApplication() {
    if (!isRunning()) return;
    process_.terminate();
    if (!process_.waitForFinished(5000)) process_.kill();
    process_.waitForFinished(1000);
}

void PlayedApplication::fail(const std::string& why) const {
    const QString picture = QDir::current().absoluteFilePath(QStringLiteral("window-at-failure.png"));
    desktop_.screen().save(picture);
    throw std::runtime_error(why + "\nThe screen at that moment: " + picture.toStdString());
}

PlayedEngine PlayedApplication::recordedStockfish() {
    return {QStringLiteral("Stockfish"),
            QStringLiteral("tee -a sent | /usr/games/stockfish | tee -a received")};
}

void PlayedApplication::writeEngines(const QList<PlayedEngine>& engines) const {
    QList<RegisteredEngine> registry;
    for (const PlayedEngine& engine : engines) {
        const QString script = home_.filePath(QStringLiteral("engine ") + engine.name);
        writeEngineScript(script, "#!/bin/bash\ncd \"$(dirname \"$0\")\"\n" + engine.command.toUtf8() + '\n');
        registry.append({engine.name, script});
    }
    writeEngineRegistry(home_.path(), registry);
}

QStringList PlayedApplication::lines(const QString& log) const {
    QFile file(home_.filePath(log));
    if (!file.open(QIODevice::ReadOnly)) return {};
    QString text = QString::fromUtf8(file.readAll());
    text.truncate(text.lastIndexOf(u'\n') + 1);  // a line being written is not there yet
    return text.split(u'\n', Qt::SkipEmptyParts);
}

AccessibleNode PlayedApplication::control(const QString& name, const QString& role) const {
    std::optional<AccessibleNode> topmost;
    const bool isThere = waitUntil(
        [&] {
            // Twice at the same place: a tab that was just opened is still laying itself out.
            const QRect before = topmost ? topmost->area : QRect();
            topmost.reset();
            for (const AccessibleNode& node : tree_.nodes())
                if (node.name == name && canBeClicked(node) && (role.isEmpty() || node.role == role) &&
                    (!topmost || node.area.y() < topmost->area.y()))
                    topmost = node;
            return topmost.has_value() && topmost->area == before;
        },
        controlLimitMs);
    if (!isThere)
        fail("no control \"" + name.toStdString() + "\" among\n" + tree_.description().toStdString());
    return *topmost;
}

AccessibleNode PlayedApplication::setting(const QString& name, const QString& role) const {
    AccessibleNode found = control(name, role);
    // The settings scroll above the start button.
    const AccessibleNode footer = control(QStringLiteral("Start Game"));
    for (int step = 0; step < mostWheelSteps && found.area.bottom() >= footer.area.top() - 4; ++step) {
        desktop_.scrollDown({footer.area.left() + 2, footer.area.top() - 40});
        found = control(name, role);
    }
    return found;
}

void PlayedApplication::clickControl(const QString& name) {
    desktop_.click(control(name).area.center());
}

void PlayedApplication::clickSetting(const QString& name) {
    desktop_.click(setting(name).area.center());
}

void PlayedApplication::setSlider(const QString& name, int value) {
    const AccessibleNode slider = setting(name, QStringLiteral("slider"));
    int left = slider.area.left();
    int right = slider.area.right();
    while (left <= right) {
        const int middle = (left + right) / 2;
        desktop_.click({middle, slider.area.center().y()});
        const int taken = qRound(tree_.value(slider).value_or(0));
        if (taken == value) return;
        (taken < value ? left : right) = taken < value ? middle + 1 : middle - 1;
    }
    fail("the slider \"" + name.toStdString() + "\" does not take " + std::to_string(value));
}

void PlayedApplication::chooseFromList(const QString& name, int index) {
    const QRect button = control(name).area;
    const QRect item(button.left(), button.bottom() + listMargin + listRowHeight * index, button.width(),
                     listRowHeight);
    const QImage before = desktop_.screen().copy(item);
    desktop_.click(button.center());
    if (!waitUntil([&] { return desktop_.screen().copy(item) != before; }, controlLimitMs))
        fail("no list of \"" + name.toStdString() + '"');
    desktop_.click(item.center());
}

QRect PlayedApplication::findBoard() const {
    const QImage picture = desktop_.screen();
    QRect area;
    std::vector<int> rows(static_cast<std::size_t>(picture.height()));
    std::vector<int> columns(static_cast<std::size_t>(picture.width()));
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QColor color = picture.pixelColor(x, y);
            if (color != lightSquare && color != darkSquare) continue;
            ++rows[static_cast<std::size_t>(y)];
            ++columns[static_cast<std::size_t>(x)];
        }
    }
    // A row or column of the board is mostly base colour even where pieces stand.
    const auto isBoardLine = [](int count) { return count > 200; };
    const auto firstRow = std::find_if(rows.begin(), rows.end(), isBoardLine);
    const auto firstColumn = std::find_if(columns.begin(), columns.end(), isBoardLine);
    if (firstRow == rows.end() || firstColumn == columns.end()) return area;
    const auto lastRow = std::find_if(rows.rbegin(), rows.rend(), isBoardLine);
    const auto lastColumn = std::find_if(columns.rbegin(), columns.rend(), isBoardLine);
    area.setTop(static_cast<int>(firstRow - rows.begin()));
    area.setLeft(static_cast<int>(firstColumn - columns.begin()));
    area.setBottom(static_cast<int>(rows.rend() - lastRow) - 1);
    area.setRight(static_cast<int>(columns.rend() - lastColumn) - 1);
    return std::abs(area.width() - area.height()) <= 1 ? area : QRect();
}

QImage PlayedApplication::windowPicture() const {
    QRect area;
    for (const AccessibleNode& node : tree_.nodes())
        area = area.united(node.isShowing ? node.area : QRect());
    return desktop_.screen().copy(area);
}

QPoint PlayedApplication::squareCenter(Square square) const {
    // In half squares, so that it stays with whole numbers until the last step.
    const auto along = [&](std::int64_t index) {
        return static_cast<int>((2 * index + 1) * board_.width() / 16);
    };
    return {board_.left() + along(square.file), board_.top() + along(7 - square.rank)};
}

void PlayedApplication::clickMove(const Move& move) {
    desktop_.click(squareCenter(move.from));
    desktop_.click(squareCenter(move.to));
    if (move.promotion) clickControl(promotionName(*move.promotion));
}

bool PlayedApplication::isLastMove(Square square) const {
    // The upper right corner of a square holds neither a coordinate nor a piece.
    const int side = board_.width() / 8;
    const QPoint corner = squareCenter(square) + QPoint(side / 2 - 5, -side / 2 + 5);
    const QColor base = (square.file + square.rank) % 2 == 0 ? darkSquare : lightSquare;
    return isClose(desktop_.screen().pixelColor(corner), withLastMoveTint(base));
}

void PlayedApplication::startGame(const QString& mode, int tenths) {
    clickControl(QStringLiteral("New Game"));
    clickSetting(mode);
    clickSetting(QStringLiteral("Fixed Move Time"));
    setSlider(QStringLiteral("Fixed Time per Move (seconds)"), tenths);
    clickControl(QStringLiteral("Start Game"));
}

void PlayedApplication::startGameAtDepth(const QString& mode, int depth) {
    clickControl(QStringLiteral("New Game"));
    clickSetting(mode);
    clickSetting(QStringLiteral("Ohne Uhr"));
    clickSetting(QStringLiteral("Fixed Depth"));
    setSlider(QStringLiteral("Fixed Depth"), depth);
    clickControl(QStringLiteral("Start Game"));
}

void PlayedApplication::savePgn(const QString& path) {
    desktop_.press(QStringLiteral("ctrl+s"));
    const bool isOpen = waitUntil(
        [&] {
            for (const AccessibleNode& node : tree_.nodes())
                if (node.name == QLatin1String("Save PGN Game") && node.isShowing) return true;
            return false;
        },
        controlLimitMs);
    if (!isOpen) fail("no save dialog");
    desktop_.press(QStringLiteral("ctrl+a"));
    desktop_.type(path);
    desktop_.press(QStringLiteral("Return"));
    if (!waitUntil([&] { return QFile::exists(path); }, controlLimitMs))
        fail("the save dialog wrote no file");
}

void PlayedApplication::closeWindow() {
    desktop_.press(QStringLiteral("alt+F4"));
    waitUntil(
        [&] {
            process_.waitForFinished(10);
            return !isRunning();
        },
        controlLimitMs);
}

QStringList PlayedApplication::processesLeft() const {
    const QByteArray mark = "HOME=" + home_.path().toUtf8();
    QStringList left;
    for (const QString& id :
         QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs)) {
        QFile environment(QStringLiteral("/proc/%1/environ").arg(id));
        if (!environment.open(QIODevice::ReadOnly) || !environment.readAll().split('\0').contains(mark))
            continue;
        QFile command(QStringLiteral("/proc/%1/cmdline").arg(id));
        if (command.open(QIODevice::ReadOnly))
            left << id + u' ' + QString::fromUtf8(command.readAll().replace('\0', ' '));
    }
    return left;
}

}  // namespace orlix::e2e
