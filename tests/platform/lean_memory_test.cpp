#include "platform/qt/lean_memory.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QPixmap>
#include <QPixmapCache>
#include <QTest>
#include <cstdlib>
#include <memory>
#include <vector>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace orlix {
namespace {

// The sanitizers bring allocators of their own.
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
/// Memory of this process's own that is in use or not given back, KiB.
qint64 ownKib() {
    QFile file(QStringLiteral("/proc/self/smaps_rollup"));
    if (!file.open(QIODevice::ReadOnly)) return -1;
    for (const QByteArray& line : file.readAll().split('\n'))
        if (line.startsWith("Anonymous:")) return line.mid(10).simplified().split(' ')[0].toLongLong();
    return -1;
}
#endif

TEST(LeanMemory, theLatestPicturesStayAndTheOthersAreBounded) {
    const LeanMemory memory;
    QPixmapCache::clear();
    constexpr int count = 100;
    constexpr int pictureKib = 40;
    for (int number = 0; number < count; ++number) {
        QPixmap picture(128, 80);
        picture.fill(Qt::transparent);  // four bytes a pixel
        QPixmapCache::insert(QString::number(number), picture);
    }
    int kept = 0;
    QPixmap found;
    for (int number = 0; number < count; ++number)
        kept += QPixmapCache::find(QString::number(number), &found) ? 1 : 0;
    EXPECT_LE(kept * pictureKib, LeanMemory::pictureCacheKib);
    EXPECT_GE(kept, 20);
    EXPECT_TRUE(QPixmapCache::find(QString::number(count - 1), &found));
    QPixmapCache::clear();
}

// The sanitizers bring allocators of their own.
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
TEST(LeanMemory, aLargeBlockThatWasFreedDoesNotMakeArenasKeepOthers) {
    using Block = std::unique_ptr<char, decltype(&std::free)>;
    const auto allocate = [](std::size_t size) {
        Block block(static_cast<char*>(std::malloc(size)), &std::free);
        if (block) *static_cast<volatile char*>(block.get()) = 1;  // not to be optimised away
        return block;
    };
    const LeanMemory memory;
    allocate(8'000'000).reset();
    const auto before = mallinfo2().hblks;
    const Block block = allocate(4'000'000);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(mallinfo2().hblks, before + 1);
}

TEST(LeanMemory, freePagesBetweenBlocksThatStayAreReturned) {
    LeanMemory memory;
    int returns = 0;
    QObject::connect(&memory, &LeanMemory::returned, [&returns] { ++returns; });
    // Small blocks of which every hundredth stays, so that no end of an arena becomes free.
    std::vector<std::unique_ptr<char[]>> blocks(20'000);
    for (auto& block : blocks)
        block = std::make_unique<char[]>(1000);
    for (std::size_t index = 0; index < blocks.size(); ++index)
        if (index % 100 != 0) blocks[index].reset();
    const qint64 before = ownKib();
    memory.returnSoon();
    memory.returnSoon();
    EXPECT_EQ(returns, 0);
    ASSERT_TRUE(QTest::qWaitFor([&returns] { return returns > 0; }, 60'000));
    EXPECT_EQ(returns, 1) << "two calls, one return";
    EXPECT_LT(ownKib(), before - 12'000);
}
#endif

}  // namespace
}  // namespace orlix
