// A process launcher without processes: records what is written, and says what the test lets it say. Owned by
// the test; main thread only.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <memory>
#include <utility>

#include "platform/child_process.h"

namespace orlix {

/// One launched engine as the test sees it; stays readable after the engine object let go of it.
struct FakeEngine {
    QString path;
    QStringList arguments;
    QByteArray written;  ///< all bytes, in order
    bool isTerminated = false;
    ProcessLauncher::OutputHandler onOutput;

    /// Complete lines written so far, without their newlines.
    QStringList lines() const {
        QStringList lines = QString::fromUtf8(written).split(u'\n');
        lines.removeLast();
        return lines;
    }
    /// Lines written since the last call of this function.
    QStringList takeLines() {
        const QStringList all = lines();
        const QStringList fresh = all.mid(taken_);
        taken_ = all.size();
        return fresh;
    }
    /// Delivers one chunk, as one read from the engine's pipe. The engine process hears of it when the event
    /// loop runs. Also possible after termination, as output that is still under way.
    void say(const QByteArray& chunk) const { onOutput(chunk); }
    void sayLine(const QByteArray& line) const { say(line + '\n'); }

  private:
    qsizetype taken_ = 0;
};

class FakeProcessLauncher : public ProcessLauncher {
  public:
    QString launchError;                         ///< when not empty, launches fail with this text
    QList<std::shared_ptr<FakeEngine>> engines;  ///< all launched so far, oldest first

    Launched launch(const QString& path, const QStringList& arguments, OutputHandler onOutput) override {
        if (!launchError.isEmpty()) return {nullptr, launchError};
        auto engine = std::make_shared<FakeEngine>();
        engine->path = path;
        engine->arguments = arguments;
        engine->onOutput = std::move(onOutput);
        engines.append(engine);
        return {std::make_unique<Process>(engine), QString()};
    }

    FakeEngine& last() const { return *engines.last(); }

  private:
    class Process : public ChildProcess {
      public:
        explicit Process(std::shared_ptr<FakeEngine> engine) : engine_(std::move(engine)) {}
        ~Process() override { engine_->isTerminated = true; }
        void write(QByteArray bytes) override {
            if (!engine_->isTerminated) engine_->written += bytes;
        }
        void terminate() override { engine_->isTerminated = true; }

      private:
        const std::shared_ptr<FakeEngine> engine_;
    };
};

}  // namespace orlix
