// Not a test: measures how evenly the event loop turns while an engine floods, and how much memory that
// takes. scripts/measure-engine-flood runs it. One line of figures a scenario, on standard output.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStringList>
#include <cstdio>

#include "engine/uci_engine_process.h"
#include "platform/posix/posix_process_launcher.h"
#include "platform/qt/qt_file_tests.h"
#include "support/event_pump.h"
#include "support/process_watch.h"
#include "support/scripted_engine.h"

namespace orlix {
namespace {

bool measure(const char* name, const QStringList& flags) {
    const ScriptedEngine scripted(QStringList{QStringLiteral("--moves=e2e4")} + flags);
    const QtFileTests files;
    PosixProcessLauncher launcher;
    EngineConfiguration config;
    config.executablePath = scripted.path();
    const qint64 descriptors = openDescriptorCount();
    const qint64 threads = threadCount();
    qint64 updates = 0;
    bool isDone = false;
    bool isReady = false;
    double seconds = 0;
    double longestStart = 0;
    double percentile = 0;
    double longest = 0;
    qint64 growth = 0;
    {
        UCIEngineProcess engine(config, launcher, files);
        QElapsedTimer elapsed;
        elapsed.start();
        engine.start([&](bool ready) { isReady = ready; });
        longestStart = static_cast<double>(elapsed.nsecsElapsed()) / 1e6;
        if (!pumpUntil([&] { return isReady; })) return false;
        engine.setOnEvaluationUpdate([&](const EngineEvaluation&) { ++updates; });
        resetPeakMemory();
        const qint64 before = residentKilobytes();
        LoopGaps gaps;
        elapsed.restart();
        engine.search({}, [&](const QString&) { isDone = true; });
        if (!pumpUntil([&] { return isDone; }, 120000)) return false;
        seconds = static_cast<double>(elapsed.nsecsElapsed()) / 1e9;
        percentile = gaps.quantile(0.99);
        longest = gaps.quantile(1);
        growth = peakResidentKilobytes() - before;
    }
    if (!pumpUntil([&] { return launcher.childCount() == 0; })) return false;
    // The last thread may still be on its way out of the C library.
    pumpUntil([&] { return threadCount() <= threads + 1; }, 1000);
    std::printf(
        "%s seconds %.2f lines %lld gap99_ms %.2f gap_max_ms %.2f growth_kib %lld start_ms %.2f descriptors "
        "%lld\n",
        name, seconds, static_cast<long long>(updates), percentile, longest, static_cast<long long>(growth),
        longestStart, static_cast<long long>(openDescriptorCount() - descriptors));
    std::fflush(stdout);
    return true;
}

}  // namespace
}  // namespace orlix

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const bool isDone =
        orlix::measure("flood",
                       {QStringLiteral("--flood-seconds=10"), QStringLiteral("--flood-rate=200000")}) &&
        orlix::measure("line_stdout", {QStringLiteral("--giant=1073741824")}) &&
        orlix::measure("line_stderr", {QStringLiteral("--giant=1073741824"), QStringLiteral("--stderr")});
    return isDone ? 0 : 1;
}
