#include "update/running_application.h"

#include <gtest/gtest.h>

#include "support/update_world.h"

namespace orlix {
namespace {

const BundleInfo builtIn{QStringLiteral("built.in"), QStringLiteral("3.0"), QStringLiteral("7")};

TEST(RunningApplication, isTheBundleThatTheProgramIsIn) {
    const test::TemporaryFolder folder;
    test::writeBundle(folder / "A B.app", "of.the.bundle", "1.2", "34");
    const RunningApplication application =
        runningApplication(test::text(folder / "A B.app/Contents/MacOS"), builtIn);
    EXPECT_EQ(application.bundlePath, test::text(folder / "A B.app"));
    EXPECT_EQ(application.identifier(), QStringLiteral("of.the.bundle"));
    EXPECT_EQ(application.version(), QStringLiteral("1.2"));
    EXPECT_EQ(application.build(), QStringLiteral("34"));
}

TEST(RunningApplication, aBundleThatSaysNothingOfItselfHasTheLeastVersion) {
    const test::TemporaryFolder folder;
    test::writeBundle(folder / "Silent.app", nullptr, nullptr, nullptr);
    for (const char* name : {"Silent.app", "Missing.app"}) {
        const RunningApplication application =
            runningApplication(test::text(folder / name / "Contents/MacOS"), builtIn);
        EXPECT_EQ(application.bundlePath, test::text(folder / name));
        EXPECT_EQ(application.identifier(), QStringLiteral("com.dovu.velmorandix")) << name;
        EXPECT_EQ(application.version(), QStringLiteral("0.0.0")) << name;
        EXPECT_EQ(application.build(), QStringLiteral("0")) << name;
    }
}

TEST(RunningApplication, outsideOfABundleItIsWhatIsBuiltIn) {
    for (const char* folder : {"/usr/bin", "/opt/Contents/MacOS/bin", "/"}) {
        const RunningApplication application = runningApplication(QString::fromLatin1(folder), builtIn);
        EXPECT_EQ(application.bundlePath, QString::fromLatin1(folder));
        EXPECT_EQ(application.identifier(), QStringLiteral("built.in"));
        EXPECT_EQ(application.version(), QStringLiteral("3.0"));
        EXPECT_EQ(application.build(), QStringLiteral("7"));
    }
}

// No feed can ask another system for a version of macOS.
TEST(RunningApplication, onlyMacOSHasASystemVersion) {
#if defined(__APPLE__)
    EXPECT_TRUE(runningApplication(QStringLiteral("/"), builtIn).systemVersion);
#else
    EXPECT_FALSE(runningApplication(QStringLiteral("/"), builtIn).systemVersion);
#endif
}

}  // namespace
}  // namespace orlix
