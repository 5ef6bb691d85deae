#include "platform/qt/lean_memory.h"

#include <gtest/gtest.h>

#include <QPixmap>
#include <QPixmapCache>
#include <cstdlib>
#include <memory>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace orlix {
namespace {

TEST(LeanMemory, theLatestPicturesStayAndTheOthersAreBounded) {
    keepMemoryLean();
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
    EXPECT_LE(kept * pictureKib, pictureCacheKib);
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
    keepMemoryLean();
    allocate(8'000'000).reset();
    const auto before = mallinfo2().hblks;
    const Block block = allocate(4'000'000);
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(mallinfo2().hblks, before + 1);
}
#endif

}  // namespace
}  // namespace orlix
