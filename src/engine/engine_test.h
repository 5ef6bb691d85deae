// The test of an executable before it is added: does it answer "uci" in time, and what does it call itself.
// Owned by the engine registry; each test runs on a thread of its own, which ends with the test.
#pragma once

#include <QString>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace orlix {

class ProcessLauncher;

struct EngineTestOutcome {
    bool success = false;
    std::optional<QString> engineName;
    std::optional<QString> author;
    std::optional<QString> error;
};

class EngineTest {
  public:
    /// An engine that has not said "uciok" by then has failed.
    static constexpr std::chrono::seconds timeLimit{3};

    using Completion = std::function<void(EngineTestOutcome outcome)>;

    /// Starts the test. `completion` runs once, on the test's own thread, unless the object is destroyed
    /// first. `launcher` outlives the object.
    EngineTest(ProcessLauncher& launcher, const QString& path, Completion completion);
    /// Breaks a running test off without waiting for its time limit.
    ~EngineTest();
    EngineTest(const EngineTest&) = delete;
    EngineTest& operator=(const EngineTest&) = delete;

  private:
    class Run;
    std::unique_ptr<Run> run_;
};

}  // namespace orlix
