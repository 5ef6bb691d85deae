// Soaks the program, for scripts/soak:
//   soak <program> <scripted engine> [minutes] [seed] [folder for pictures]
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <cstdio>
#include <exception>

#include "e2e/soak.h"

int main(int argc, char** argv) {
    using namespace orlix::e2e;
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3) {
        std::fputs("usage: soak <program> <scripted engine> [minutes] [seed] [folder for pictures]\n",
                   stderr);
        return 2;
    }
    SoakPlan plan;
    if (arguments.size() > 3) plan.minutes = arguments[3].toDouble();
    plan.warmUpSeconds = std::min(plan.warmUpSeconds, static_cast<int>(plan.minutes * 20));
    if (arguments.size() > 4) plan.seed = arguments[4].toUInt();
    plan.pictures = arguments.value(5);
    if (!plan.pictures.isEmpty()) QDir().mkpath(plan.pictures);
    std::printf("Soaking for %.1f minutes with seed %u\n", plan.minutes, plan.seed);
    std::fflush(stdout);
    try {
        Desktop desktop;
        AccessibleTree tree(desktop.busAddress());
        SoakedApplication soaked(desktop, tree, QFileInfo(arguments[1]).absoluteFilePath(),
                                 QFileInfo(arguments[2]).absoluteFilePath());
        Soak soak(soaked, plan);
        soak.run();
        std::puts("nothing found");
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "seed %u: %s\n", plan.seed, failure.what());
        return 1;
    }
}
