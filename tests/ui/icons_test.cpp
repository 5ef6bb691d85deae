#include "ui/icons.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <set>
#include <thread>

namespace orlix {
namespace {

constexpr int iconCount = static_cast<int>(Icon::chevronDown) + 1;

QImage drawn(Icon icon, const QColor& color, int size, qreal ratio) {
    return iconPixmap(icon, color, size, ratio).toImage().convertToFormat(QImage::Format_ARGB32);
}

int inkedPixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 127 ? 1 : 0;
    }
    return count;
}

TEST(Icons, everyIconIsDrawnAndNoTwoAreAlike) {
    std::set<QByteArray> seen;
    for (int number = 0; number < iconCount; ++number) {
        const QImage image = drawn(static_cast<Icon>(number), Qt::black, 20, 2);
        EXPECT_GT(inkedPixels(image), 40) << "icon " << number;
        const QByteArray bytes(reinterpret_cast<const char*>(image.constBits()),
                               static_cast<int>(image.sizeInBytes()));
        EXPECT_TRUE(seen.insert(bytes).second) << "icon " << number << " looks like an earlier one";
    }
}

TEST(Icons, everyFileBelongsToAnIconAndKeepsTheGridAndTheStrokeWeight) {
    const QDir folder(QStringLiteral(":/icons"));
    const QStringList names = folder.entryList({QStringLiteral("*.svg")});
    EXPECT_EQ(names.size(), iconCount);
    for (const QString& name : names) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray source = file.readAll();
        EXPECT_TRUE(source.contains("viewBox=\"0 0 20 20\"")) << name.toStdString();
        EXPECT_TRUE(source.contains("stroke=\"currentColor\"")) << name.toStdString();
        EXPECT_EQ(source.count("stroke-width"), 1) << name.toStdString();
        EXPECT_TRUE(source.contains("stroke-width=\"1.5\"")) << name.toStdString();
    }
}

TEST(Icons, sizeCountsInDevicePixels) {
    const QPixmap once = iconPixmap(Icon::flip, Qt::black, 20, 1);
    EXPECT_EQ(once.size(), QSize(20, 20));
    const QPixmap twice = iconPixmap(Icon::flip, Qt::black, 20, 2);
    EXPECT_EQ(twice.size(), QSize(40, 40));
    EXPECT_DOUBLE_EQ(twice.devicePixelRatio(), 2);
    EXPECT_GT(inkedPixels(twice.toImage()), 3 * inkedPixels(once.toImage()));
    EXPECT_TRUE(iconPixmap(Icon::flip, Qt::black, 0, 1).isNull());
}

TEST(Icons, tintColoursEveryStroke) {
    const QImage image = drawn(Icon::resign, QColor(200, 30, 20), 20, 2);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) != 255) continue;
            EXPECT_EQ(image.pixel(x, y), qRgb(200, 30, 20));
        }
    }
}

TEST(Icons, translucentTintKeepsItsOpacity) {
    const QImage image = drawn(Icon::stop, QColor(0, 0, 0, 128), 20, 1);
    EXPECT_NEAR(qAlpha(image.pixel(10, 10)), 128, 1);
}

TEST(Icons, shapesAreDrawnAheadAndTintedLater) {
    constexpr SizedIcon wanted[] = {{Icon::flip, 18}, {Icon::flip, 20}, {Icon::undo, 18}};
    forgetIcons();
    std::thread([&] { prepareIcons(wanted, 1.5); }).join();
    EXPECT_EQ(preparedIcons(), 3);
    const QColor tint(9, 90, 210);
    const QImage ahead = drawn(Icon::undo, tint, 18, 1.5);
    EXPECT_EQ(preparedIcons(), 3);
    forgetIcons();
    EXPECT_EQ(drawn(Icon::undo, QColor(9, 90, 211), 18, 1.5).convertToFormat(QImage::Format_Alpha8),
              ahead.convertToFormat(QImage::Format_Alpha8));
    EXPECT_EQ(preparedIcons(), 1);
}

TEST(Icons, theSameIconIsRenderedOnce) {
    const QPixmap first = iconPixmap(Icon::clock, QColor(1, 2, 3), 14, 1);
    EXPECT_EQ(iconPixmap(Icon::clock, QColor(1, 2, 3), 14, 1).cacheKey(), first.cacheKey());
    EXPECT_NE(iconPixmap(Icon::clock, QColor(1, 2, 4), 14, 1).cacheKey(), first.cacheKey());
}

}  // namespace
}  // namespace orlix
