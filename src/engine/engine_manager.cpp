#include "engine/engine_manager.h"

#include <QLocale>
#include <QPointer>
#include <QStringList>
#include <QTextBoundaryFinder>
#include <algorithm>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "engine/engine_test.h"
#include "platform/child_process.h"
#include "platform/defaults_store.h"
#include "platform/file_dialogs.h"
#include "platform/file_tests.h"
#include "platform/posix/waker.h"
#include "platform/system_settings.h"

namespace orlix {
namespace {

EngineManager* sharedInstance = nullptr;

QString userDefaultsKey() {
    return QStringLiteral("Velmorandix_InstalledEngines");
}

// The engine from the same house is listed first wherever it turns up.
constexpr QLatin1String siblingKeyword("quillmere");
constexpr QLatin1String siblingName("Quillmere");
constexpr QLatin1String siblingAuthor("The Quillmere Authors");
constexpr QLatin1String siblingFileName("quillmere-uci");

constexpr QLatin1String commonPaths[] = {
    QLatin1String("/opt/homebrew/bin/stockfish"), QLatin1String("/usr/local/bin/stockfish"),
    QLatin1String("/usr/bin/stockfish"),          QLatin1String("/opt/homebrew/bin/gnuchess"),
    QLatin1String("/usr/local/bin/gnuchess"),     QLatin1String("/opt/homebrew/bin/crafty"),
    QLatin1String("/opt/homebrew/bin/komodo"),    QLatin1String("/usr/local/bin/komodo"),
};

QString fileName(const QString& path) {
    const QStringList parts = path.split(u'/', Qt::SkipEmptyParts);
    return parts.isEmpty() ? path : parts.last();
}

// Every word begins with a capital and goes on in lower case: "fairy-stockfish" gives "Fairy-Stockfish".
QString capitalized(const QString& text) {
    const QLocale locale;
    QString result;
    QTextBoundaryFinder words(QTextBoundaryFinder::Word, text);
    qsizetype start = 0;
    for (qsizetype end = words.toNextBoundary(); end != -1; start = end, end = words.toNextBoundary()) {
        const QString word = text.mid(start, end - start);
        const qsizetype firstSize = word.front().isHighSurrogate() && word.size() > 1 ? 2 : 1;
        result += locale.toUpper(word.left(firstSize)) + locale.toLower(word.mid(firstSize));
    }
    return result;
}

bool containsSiblingKeyword(const QString& text) {
    const QLocale locale;
    return locale.toLower(text).contains(locale.toLower(siblingKeyword));
}

bool isSibling(const EngineConfiguration& engine) {
    return containsSiblingKeyword(engine.name) || containsSiblingKeyword(engine.executablePath);
}

EngineConfiguration foundEngine(const QString& name, const QString& path, const QString& author) {
    EngineConfiguration engine;
    engine.name = name;
    engine.executablePath = path;
    engine.author = author;
    return engine;
}

}  // namespace

class EngineManager::Impl {
  public:
    Impl(EngineManager& manager, Platform seams) : owner(manager), platform(seams) {}

    std::optional<QString> siblingPath() const;
    void discoverSibling();
    void addScanned(const QString& path);
    void settle();
    void setupDefaultSelection(std::optional<EngineConfiguration>& selected) const;
    void startTest(const QString& path, TestCompletion completion);
    void finishTests();

    EngineManager& owner;
    Platform platform;
    QList<EngineConfiguration> available;
    std::optional<EngineConfiguration> white;
    std::optional<EngineConfiguration> black;

  private:
    struct FinishedTest {
        quint64 number;
        EngineTestOutcome outcome;
    };
    struct RunningTest {
        std::unique_ptr<EngineTest> test;
        TestCompletion completion;
    };

    std::mutex mutex_;  // guards the finished tests, which come from the tests' threads
    std::vector<FinishedTest> finished_;
    Waker testsFinished_{[this] { finishTests(); }};
    quint64 testsStarted_ = 0;
    std::map<quint64, RunningTest> tests_;  // last: a test's thread uses what stands above
};

std::optional<QString> EngineManager::Impl::siblingPath() const {
    const QString home = platform.files.homeDirectory();
    const QString bundled = QStringLiteral("/Applications/Quillmere.app/Contents/Helpers/") + siblingFileName;
    const QString candidates[] = {
        home + QStringLiteral("/bin/") + siblingFileName,
        bundled,
        home + bundled,
        QStringLiteral("/opt/homebrew/bin/") + siblingFileName,
        QStringLiteral("/usr/local/bin/") + siblingFileName,
    };
    for (const QString& path : candidates) {
        if (platform.files.isExecutableFile(path)) return path;
    }
    return std::nullopt;
}

void EngineManager::Impl::discoverSibling() {
    if (!std::any_of(available.cbegin(), available.cend(), isSibling)) {
        const std::optional<QString> path = siblingPath();
        if (!path) return;
        available.append(foundEngine(siblingName, *path, siblingAuthor));
    }
    available = prioritized(available);
}

void EngineManager::Impl::addScanned(const QString& path) {
    if (!platform.files.isExecutableFile(path)) return;
    const auto isKnown = [&path](const EngineConfiguration& engine) { return engine.executablePath == path; };
    if (std::any_of(available.cbegin(), available.cend(), isKnown)) return;
    const QString file = fileName(path);
    const QString name = file.toLower() == siblingFileName ? QString(siblingName) : capitalized(file);
    available.append(foundEngine(name, path, QStringLiteral("Auto-detected")));
}

void EngineManager::Impl::settle() {
    available = prioritized(available);
    owner.saveEngines();
    setupDefaultSelection(white);
    setupDefaultSelection(black);
}

void EngineManager::Impl::setupDefaultSelection(std::optional<EngineConfiguration>& selected) const {
    if (selected && available.contains(*selected)) return;
    if (available.isEmpty()) {
        selected.reset();
    } else {
        selected = available.first();
    }
}

void EngineManager::Impl::startTest(const QString& path, TestCompletion completion) {
    const quint64 number = ++testsStarted_;
    RunningTest& running = tests_[number];
    running.completion = std::move(completion);
    running.test =
        std::make_unique<EngineTest>(platform.launcher, path, [this, number](EngineTestOutcome outcome) {
            const std::lock_guard lock(mutex_);
            finished_.push_back({number, std::move(outcome)});
            testsFinished_.wake();
        });
}

void EngineManager::Impl::finishTests() {
    std::vector<FinishedTest> taken;
    {
        const std::lock_guard lock(mutex_);
        taken.swap(finished_);
    }
    const QPointer<EngineManager> manager(&owner);
    for (FinishedTest& test : taken) {
        const auto running = tests_.extract(test.number);
        if (!running.mapped().completion) continue;
        running.mapped().completion({test.outcome.success, std::move(test.outcome.engineName),
                                     std::move(test.outcome.author), std::move(test.outcome.error)});
        if (!manager) return;  // the completion was the manager's end
    }
}

EngineManager& EngineManager::shared() {
    Q_ASSERT(sharedInstance);
    return *sharedInstance;
}

void EngineManager::registerShared(EngineManager* instance) {
    sharedInstance = instance;
}

EngineManager::EngineManager(Platform platform, QObject* parent)
    : QObject(parent), impl_(std::make_unique<Impl>(*this, platform)) {
    loadEngines();
    impl_->discoverSibling();
    if (impl_->available.isEmpty()) {
        scanDefaultPaths();
    } else {
        impl_->settle();
    }
}

EngineManager::~EngineManager() = default;

const QList<EngineConfiguration>& EngineManager::availableEngines() const {
    return impl_->available;
}

const std::optional<EngineConfiguration>& EngineManager::selectedWhiteEngine() const {
    return impl_->white;
}

const std::optional<EngineConfiguration>& EngineManager::selectedBlackEngine() const {
    return impl_->black;
}

void EngineManager::setSelectedWhiteEngine(std::optional<EngineConfiguration> engine) {
    if (impl_->white == engine) return;
    impl_->white = std::move(engine);
    Q_EMIT changed();
}

void EngineManager::setSelectedBlackEngine(std::optional<EngineConfiguration> engine) {
    if (impl_->black == engine) return;
    impl_->black = std::move(engine);
    Q_EMIT changed();
}

void EngineManager::loadEngines() {
    const std::optional<QByteArray> data = impl_->platform.defaults.data(userDefaultsKey());
    if (!data) return;
    std::optional<QList<EngineConfiguration>> engines = engineConfigurationsFromJson(*data);
    if (!engines) return;
    impl_->available = std::move(*engines);
    Q_EMIT changed();
}

void EngineManager::saveEngines() {
    impl_->platform.defaults.setData(userDefaultsKey(), toJson(impl_->available));
}

void EngineManager::scanDefaultPaths() {
    if (const std::optional<QString> sibling = impl_->siblingPath()) impl_->addScanned(*sibling);
    for (const QLatin1String path : commonPaths)
        impl_->addScanned(path);
    const QStringList additionalPaths = impl_->platform.system.additionalEnginePaths();
    for (const QString& path : additionalPaths)
        impl_->addScanned(path);
    impl_->settle();
    Q_EMIT changed();
}

void EngineManager::testEngine(const QString& executablePath, TestCompletion completion) {
    impl_->startTest(executablePath, std::move(completion));
}

void EngineManager::addEngine(const QString& path, const std::optional<QString>& customName,
                              AddCompletion completion) {
    testEngine(path, [this, path, customName, done = std::move(completion)](const EngineTestResult& result) {
        if (!result.success) {
            if (done)
                done(std::nullopt, QStringLiteral("Engine failed UCI test: ") +
                                       result.error.value_or(QStringLiteral("No response to 'uci'")));
            return;
        }
        const QString chosenName = customName.value_or(QString()).trimmed();
        const QString name = !chosenName.isEmpty() ? chosenName : result.engineName.value_or(fileName(path));
        const EngineConfiguration engine = foundEngine(name, path, result.author.value_or(QString()));
        impl_->available.append(engine);
        saveEngines();
        Q_EMIT changed();
        if (done) done(engine, std::nullopt);
    });
}

void EngineManager::removeEngine(const EngineConfiguration& engine) {
    const Uuid id = engine.id;  // `engine` may be a record of the list itself
    impl_->available.removeIf([&id](const EngineConfiguration& record) { return record.id == id; });
    saveEngines();
    Q_EMIT changed();
}

void EngineManager::updateEngineConfig(const Uuid& id, bool limitElo, qint64 elo) {
    const auto update = [&](EngineConfiguration& record) {
        if (record.id != id) return;
        record.limitElo = limitElo;
        record.elo = elo;
    };
    std::for_each(impl_->available.begin(), impl_->available.end(), update);
    if (impl_->white) update(*impl_->white);
    if (impl_->black) update(*impl_->black);
    saveEngines();
    Q_EMIT changed();
}

void EngineManager::pickEngineFile(PickCompletion completion) {
    impl_->platform.dialogs.open(
        {QStringLiteral("Select UCI Chess Engine Executable"), QStringLiteral("Choose Engine")},
        std::move(completion));
}

QList<EngineConfiguration> EngineManager::prioritized(const QList<EngineConfiguration>& engines) {
    QList<EngineConfiguration> sorted = engines;
    std::stable_partition(sorted.begin(), sorted.end(), isSibling);
    return sorted;
}

}  // namespace orlix
