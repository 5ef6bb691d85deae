#include "platform/linux/window_memory.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <QBackingStore>
#include <QImage>
#include <QThreadPool>
#include <QWidget>
#include <algorithm>
#include <cstdint>
#include <vector>

namespace orlix {
namespace {

// Large enough that it gets memory of its own.
constexpr QSize windowSize{800, 600};

const QImage* pictureOf(const QWidget& window) {
    const QBackingStore* store = window.backingStore();
    return store == nullptr ? nullptr
                            : static_cast<const QImage*>(const_cast<QBackingStore*>(store)->paintDevice());
}

/// How much of the picture's memory is there, 0..1.
double providedShare(const QImage& picture) {
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const uchar* bits = picture.constBits();
    auto* firstPage = const_cast<uchar*>(bits - reinterpret_cast<std::uintptr_t>(bits) % page);
    const auto length = static_cast<std::size_t>(picture.sizeInBytes());
    std::vector<unsigned char> pages((length + page - 1) / page);
    if (mincore(firstPage, length, pages.data()) != 0) return -1;
    const auto provided =
        std::count_if(pages.begin(), pages.end(), [](unsigned char state) { return (state & 1) != 0; });
    return static_cast<double>(provided) / static_cast<double>(pages.size());
}

TEST(WindowMemory, isThereBeforeTheFirstPicture) {
    QWidget window;
    window.resize(windowSize);
    provideWindowMemory(window);
    QThreadPool::globalInstance()->waitForDone();
    const QImage* picture = pictureOf(window);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(picture->size(), windowSize);
    EXPECT_DOUBLE_EQ(providedShare(*picture), 1);
}

TEST(WindowMemory, isOtherwiseThereOnlyWhenItIsPainted) {
    QWidget window;
    window.resize(windowSize);
    window.winId();
    window.backingStore()->resize(windowSize);
    EXPECT_LT(providedShare(*pictureOf(window)), 0.5);
}

TEST(WindowMemory, mayGoBeforeItHasCome) {
    for (int round = 0; round < 50; ++round) {
        QWidget window;
        window.resize(windowSize);
        provideWindowMemory(window);
    }
    EXPECT_TRUE(QThreadPool::globalInstance()->waitForDone(10000));
}

TEST(WindowMemory, ofAWindowWithoutRoomIsNotAskedFor) {
    QWidget window;
    window.resize(0, 0);
    provideWindowMemory(window);
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_FALSE(window.isVisible());
}

}  // namespace
}  // namespace orlix
