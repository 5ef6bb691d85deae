#include "e2e/soak_application.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <stdexcept>

#include "e2e/engine_registry.h"
#include "l10n/text_table.h"

namespace orlix::e2e {

namespace {

constexpr int windowLimitMs = 60000;
constexpr int closeLimitMs = 30000;

// A new fault at each start, in the same order in every run. The two engines are at different places of it,
// so that games between them change partners.
constexpr const char* engineScript = R"(#!/bin/bash
turn=$(cat "$0.turn" 2>/dev/null || echo %1)
echo $((turn + 1)) >"$0.turn"
white=--moves=e2e4,g1f3,f1c4,e1g1,d2d3,c2c3,b1d2
black=--moves=e7e5,b8c6,g8f6,f8c5,d7d6,c8g4,d8d7
either=--moves=e7e5,e2e4,b8c6,g1f3,g8f6,f1c4,f8c5,e1g1
case $((turn % 18)) in
    0) set -- "$white" --move-delay-ms=100 ;;
    1) set -- "$black" --move-delay-ms=100 ;;
    2) set -- "$either" --crlf ;;
    3) set -- --moves=e2e5,a1a9,zzzz ;;
    4) set -- --moves= ;;
    5) set -- "$white" --flood-seconds=2 --flood-rate=20000 ;;
    6) set -- "$black" --flood-lines=50000 ;;
    7) set -- "$either" --undecodable --nul ;;
    8) set -- "$either" --move-delay-ms=3000 ;;
    9) set -- "$white" --crash-at=go ;;
    10) set -- "$black" --crash-at=answered ;;
    11) set -- --exit-at=isready ;;
    12) set -- "$either" --ignore-quit --ignore-term --late ;;
    13) set -- "$white" --deaf-at=go ;;
    14) set -- "$black" --stop-at=go ;;
    15) set -- "$either" --child --ignore-term ;;
    16) set -- "$either" --giant=4000000 ;;
    17) set -- "$black" --giant=4000000 --giant-unfinished --stderr ;;
esac
exec '%2' --name='%3' "$@"
)";

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The number after `label` at the beginning of a line of a file under /proc.
qint64 number(const QByteArray& text, const QByteArray& label) {
    for (const QByteArray& line : text.split('\n'))
        if (line.startsWith(label + ':'))
            return line.mid(label.size() + 1).simplified().split(' ')[0].toLongLong();
    return -1;
}

bool canBeClicked(const AccessibleNode& node) {
    static const QStringList roles{QStringLiteral("push button"),   QStringLiteral("radio button"),
                                   QStringLiteral("check box"),     QStringLiteral("page tab"),
                                   QStringLiteral("toggle button"), QStringLiteral("button menu"),
                                   QStringLiteral("combo box")};
    return node.isShowing && !node.area.isEmpty() && roles.contains(node.role);
}

QStringList inAllLanguages(const char* key) {
    QStringList texts;
    for (const Language language : allLanguages)
        if (const auto text = lookUpText(language, QString::fromLatin1(key))) texts << *text;
    return texts;
}

}  // namespace

QStringList messageList(const QByteArray& file) {
    QStringList messages;
    for (const QString& line : QString::fromUtf8(file).split(u'\n', Qt::SkipEmptyParts))
        if (!line.startsWith(u'#')) messages << line;
    return messages;
}

QStringList unknownMessages(const QByteArray& written, const QStringList& known) {
    QStringList unknown;
    for (const QString& line : QString::fromUtf8(written).split(u'\n', Qt::SkipEmptyParts))
        if (!known.contains(line)) unknown << line;
    return unknown;
}

SoakedApplication::SoakedApplication(Desktop& desktop, AccessibleTree& tree, const QString& program,
                                     const QString& engine)
    : desktop_(desktop), tree_(tree), known_(messageList(contents(QStringLiteral(ORLIX_KNOWN_MESSAGES)))) {
    writeEngines(engine);
    writeColors(false);
    QProcessEnvironment environment = desktop_.environment();
    environment.insert(QStringLiteral("HOME"), home_.path());
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home_.filePath(QStringLiteral(".config")));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), home_.filePath(QStringLiteral(".local/share")));
    environment.insert(QStringLiteral("XDG_CACHE_HOME"), home_.filePath(QStringLiteral(".cache")));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home_.path());
    environment.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("LANGUAGE"), QStringLiteral("en"));
    // Of the desktops that Qt knows by itself, this one tells a running program of new colours.
    environment.insert(QStringLiteral("XDG_CURRENT_DESKTOP"), QStringLiteral("KDE"));
    environment.insert(QStringLiteral("KDE_SESSION_VERSION"), QStringLiteral("5"));
    process_.setProcessEnvironment(environment);
    process_.setWorkingDirectory(home_.path());
    process_.setStandardOutputFile(QProcess::nullDevice());
    process_.setStandardErrorFile(home_.filePath(QStringLiteral("messages")));
    process_.start(program, {});
    if (!process_.waitForStarted()) throw std::runtime_error(process_.errorString().toStdString());
    windows_ = std::make_unique<SoakWindows>(environment.value(QStringLiteral("DISPLAY")));
    const bool isShown = waitUntil(
        [&] {
            board_ = findBoard();
            return !board_.isEmpty() && !windows_->managed().isEmpty() && tree_.nodes().size() > 10;
        },
        windowLimitMs);
    if (!isShown) fail("the program shows no board");
    mainWindow_ = windows_->managed().constFirst();
    board_ = findBoard();  // a window manager may have moved the window after its first picture
}

SoakedApplication::~SoakedApplication() {
    if (!isRunning()) return;
    process_.terminate();
    if (!process_.waitForFinished(5000)) process_.kill();
    process_.waitForFinished(1000);
}

void SoakedApplication::fail(const std::string& why) const {
    const QString picture = QDir::current().absoluteFilePath(QStringLiteral("window-at-failure.png"));
    desktop_.screen().save(picture);
    throw std::runtime_error(why + "\nThe screen at that moment: " + picture.toStdString());
}

void SoakedApplication::writeEngines(const QString& engine) {
    QList<RegisteredEngine> registry;
    int firstTurn = 0;
    for (const QString& name : {QStringLiteral("Moody One"), QStringLiteral("Moody Two")}) {
        const QString path = home_.filePath(name);
        writeEngineScript(
            path, QString::fromLatin1(engineScript).arg(QString::number(firstTurn), engine, name).toUtf8());
        enginePaths_ << path;
        firstTurn += 7;
        registry.append({name, path});
    }
    writeEngineRegistry(home_.path(), registry);
}

QStringList SoakedApplication::missingEngines() const {
    const QStringList stored = registeredPaths(home_.path());
    QStringList missing;
    for (const QString& path : enginePaths_)
        if (!stored.contains(path)) missing << path;
    return missing;
}

QList<int> SoakedApplication::engineRows() const {
    const QStringList stored = registeredPaths(home_.path());
    QList<int> rows;
    for (int row = 0; row < stored.size(); ++row)
        if (enginePaths_.contains(stored[row])) rows << row;
    return rows;
}

int SoakedApplication::engineCount() const {
    return static_cast<int>(registeredPaths(home_.path()).size());
}

void SoakedApplication::writeColors(bool isDark) const {
    QFile file(home_.filePath(QStringLiteral(".config/kdeglobals")));
    if (!file.open(QIODevice::WriteOnly)) throw std::runtime_error("the system's colours cannot be written");
    const QByteArray ground = isDark ? "30,32,36" : "243,243,240";
    const QByteArray text = isDark ? "236,237,238" : "29,31,35";
    file.write("[General]\nColorScheme=" + QByteArray(isDark ? "Dark" : "Light") + '\n');
    for (const char* part : {"Window", "View", "Button", "Selection", "Tooltip"})
        file.write(QByteArray("[Colors:") + part + "]\nBackgroundNormal=" + ground +
                   "\nBackgroundAlternate=" + ground + "\nForegroundNormal=" + text +
                   "\nForegroundInactive=" + text + "\nForegroundLink=" + text +
                   "\nForegroundVisited=" + text + '\n');
}

void SoakedApplication::setDark(bool isDark) const {
    writeColors(isDark);
    QProcess signal;
    signal.start(
        QStringLiteral("dbus-send"),
        {QStringLiteral("--bus=") + desktop_.busAddress(), QStringLiteral("--type=signal"),
         QStringLiteral("/org/freedesktop/portal/desktop"),
         QStringLiteral("org.freedesktop.portal.Settings.SettingChanged"),
         QStringLiteral("string:org.kde.kdeglobals.General"), QStringLiteral("string:ColorScheme"),
         QStringLiteral("variant:string:") + (isDark ? QStringLiteral("Dark") : QStringLiteral("Light"))});
    if (!signal.waitForFinished(30000) || signal.exitCode() != 0)
        throw std::runtime_error("the system's colours cannot be announced");
}

SoakFigures SoakedApplication::figures() const {
    const QString folder = QStringLiteral("/proc/%1/").arg(processId());
    const QByteArray memory = contents(folder + QStringLiteral("smaps_rollup"));
    const QByteArray status = contents(folder + QStringLiteral("status"));
    return {number(memory, "Anonymous"), number(memory, "Pss"), static_cast<int>(descriptors().size()),
            static_cast<int>(number(status, "Threads"))};
}

QStringList SoakedApplication::descriptors() const {
    QStringList all;
    const QDir folder(QStringLiteral("/proc/%1/fd").arg(processId()));
    for (const QString& name : folder.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System))
        all << name + u' ' + QFile::symLinkTarget(folder.filePath(name));
    return all;
}

QStringList SoakedApplication::otherProcesses() const {
    const QByteArray mark = "HOME=" + home_.path().toUtf8();
    QStringList others;
    for (const QString& id :
         QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs)) {
        if (isRunning() && id.toLongLong() == processId()) continue;
        if (!contents(QStringLiteral("/proc/%1/environ").arg(id)).split('\0').contains(mark)) continue;
        others << id + u' ' +
                      QString::fromUtf8(
                          contents(QStringLiteral("/proc/%1/cmdline").arg(id)).replace('\0', ' '));
    }
    return others;
}

QStringList SoakedApplication::unknownMessages() const {
    return e2e::unknownMessages(contents(home_.filePath(QStringLiteral("messages"))), known_);
}

void SoakedApplication::activateDialog() const {
    const QList<unsigned long> managed = windows_->managed();
    if (managed.size() > 1) windows_->activate(managed.constLast());
}

int SoakedApplication::check(int answerLimitMs) {
    const std::optional<int> answer = windows_->answerTime(mainWindow_, answerLimitMs);
    process_.waitForFinished(0);
    const QString said = unknownMessages().join(u'\n');
    if (!isRunning())
        fail("the program has ended " +
             (process_.exitStatus() == QProcess::CrashExit
                  ? "by signal " + std::to_string(process_.exitCode())
                  : "with " + std::to_string(process_.exitCode())) +
             "\n" + said.toStdString());
    if (!said.isEmpty()) fail("unknown messages:\n" + said.toStdString());
    if (!windows_->isManaging()) throw std::runtime_error("the window manager has ended; this says nothing");
    if (!answer) fail("no answer within " + std::to_string(answerLimitMs) + " ms");
    return *answer;
}

std::optional<QPoint> SoakedApplication::control(const char* key) {
    const QStringList names = inAllLanguages(key);
    std::optional<QRect> topmost;
    for (const AccessibleNode& node : tree_.nodes())
        if (names.contains(node.name) && canBeClicked(node) && (!topmost || node.area.y() < topmost->y()))
            topmost = node.area;
    if (!topmost) return std::nullopt;
    return topmost->center();
}

std::optional<AccessibleNode> SoakedApplication::pickerNode() {
    const QStringList captions = inAllLanguages("language");
    for (const AccessibleNode& node : tree_.nodes())
        for (const QString& caption : captions)
            if (node.name.startsWith(caption + u':') && canBeClicked(node)) return node;
    return std::nullopt;
}

std::optional<QRect> SoakedApplication::languagePicker() {
    const std::optional<AccessibleNode> node = pickerNode();
    if (!node) return std::nullopt;
    return node->area;
}

QList<QRect> SoakedApplication::enginePickers() {
    QList<QRect> pickers;
    for (const AccessibleNode& node : tree_.nodes())
        for (const QString& path : std::as_const(enginePaths_))
            if (canBeClicked(node) && node.name.endsWith(QStringLiteral(": ") + QFileInfo(path).fileName()))
                pickers << node.area;
    return pickers;
}

std::optional<Language> SoakedApplication::language() {
    const std::optional<AccessibleNode> node = pickerNode();
    for (const Language language : allLanguages)
        if (node && node->name.endsWith(displayName(language))) return language;
    return std::nullopt;
}

QRect SoakedApplication::findBoard() const {
    const QImage picture = desktop_.screen();
    const QRgb light = qRgb(240, 219, 189);
    const QRgb dark = qRgb(181, 135, 97);
    std::vector<int> rows(static_cast<std::size_t>(picture.height()));
    std::vector<int> columns(static_cast<std::size_t>(picture.width()));
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb color = picture.pixel(x, y) | 0xFF000000u;
            if (color != light && color != dark) continue;
            ++rows[static_cast<std::size_t>(y)];
            ++columns[static_cast<std::size_t>(x)];
        }
    }
    // A row or column of the board is mostly base colour even where pieces stand.
    const auto ends = [](const std::vector<int>& counts) {
        const auto isBoardLine = [](int count) { return count > 200; };
        const auto first = std::find_if(counts.begin(), counts.end(), isBoardLine);
        const auto last = std::find_if(counts.rbegin(), counts.rend(), isBoardLine);
        return std::pair(static_cast<int>(first - counts.begin()),
                         static_cast<int>(counts.rend() - last) - 1);
    };
    const auto [top, bottom] = ends(rows);
    const auto [left, right] = ends(columns);
    if (bottom <= top || right <= left) return {};
    return {QPoint(left, top), QPoint(right, bottom)};
}

std::optional<int> SoakedApplication::close() {
    windows_->askToClose(mainWindow_);
    waitUntil(
        [&] {
            process_.waitForFinished(10);
            return !isRunning();
        },
        closeLimitMs);
    if (isRunning() || process_.exitStatus() != QProcess::NormalExit) return std::nullopt;
    return process_.exitCode();
}

}  // namespace orlix::e2e
