// The registry of UCI engines: finds, tests, adds, removes and stores them, and holds the ones chosen for
// White and Black. Owned by the composition root; main thread only, the engine test runs beside it.
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "engine/engine_configuration.h"

namespace orlix {

class DefaultsStore;
class FileDialogs;
class FileTests;
class ProcessLauncher;
class SystemSettings;

class EngineManager : public QObject {
    Q_OBJECT
  public:
    struct EngineTestResult {
        bool success = false;
        std::optional<QString> engineName;
        std::optional<QString> author;
        std::optional<QString> error;
        bool operator==(const EngineTestResult&) const = default;
    };
    /// What the registry reaches the system through; all of it outlives the manager.
    struct Platform {
        DefaultsStore& defaults;
        const FileTests& files;
        const SystemSettings& system;
        ProcessLauncher& launcher;
        FileDialogs& dialogs;
    };
    using TestCompletion = std::function<void(const EngineTestResult& result)>;
    using AddCompletion = std::function<void(const std::optional<EngineConfiguration>& engine,
                                             const std::optional<QString>& error)>;
    using PickCompletion = std::function<void(const std::optional<QString>& path)>;

    /// The registered instance; asserts that there is one.
    static EngineManager& shared();
    /// Called by the composition root; null takes the registration back.
    static void registerShared(EngineManager* instance);

    explicit EngineManager(Platform platform, QObject* parent = nullptr);
    ~EngineManager() override;

    const QList<EngineConfiguration>& availableEngines() const;
    const std::optional<EngineConfiguration>& selectedWhiteEngine() const;
    const std::optional<EngineConfiguration>& selectedBlackEngine() const;
    void setSelectedWhiteEngine(std::optional<EngineConfiguration> engine);
    void setSelectedBlackEngine(std::optional<EngineConfiguration> engine);

    void loadEngines();
    void saveEngines();
    void scanDefaultPaths();
    void testEngine(const QString& executablePath, TestCompletion completion);
    void addEngine(const QString& path, const std::optional<QString>& customName, AddCompletion completion);
    void removeEngine(const EngineConfiguration& engine);
    void updateEngineConfig(const Uuid& id, bool limitElo, qint64 elo);
    void pickEngineFile(PickCompletion completion);
    static QList<EngineConfiguration> prioritized(const QList<EngineConfiguration>& engines);

  Q_SIGNALS:
    void changed();

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace orlix
