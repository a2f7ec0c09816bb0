#include "Freedesktop/Interface/Icons.h"

#include "Freedesktop/Interface/Conversions.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QPainter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace marrowick {
namespace {

using Pixels = std::vector<std::uint32_t>;

QImage pixels(QIcon const& icon, qreal scale = 1)
{
    return icon.pixmap(QSize(16, 16), scale).toImage().convertToFormat(QImage::Format_ARGB32);
}

/// What a menu shows of the icon in a square of 16 points.
QImage painted(QIcon const& icon)
{
    QImage canvas(16, 16, QImage::Format_ARGB32);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    icon.paint(&painter, canvas.rect());
    return canvas;
}

Image imageOf(int width, int height, Pixels values)
{
    return { Bitmap { width, height, std::make_shared<Pixels const>(std::move(values)) }, 0, {}, 1 };
}

Image plain(int side, std::uint32_t colour)
{
    return imageOf(side, side, Pixels(static_cast<std::size_t>(side * side), colour));
}

Image faded(Image image, double opacity)
{
    image.opacity = opacity;
    return image;
}

bool isEmpty(QImage const& image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) != 0)
                return false;
        }
    }
    return true;
}

TEST(BitmapIconTest, RowsRunFromTheTopAndColoursAreNotMultiplied)
{
    Pixels values(16 * 16, 0xFF0000FF);
    values[0] = 0xFFFF0000;
    values[15] = 0x8000FF00;
    values[15 * 16] = 0x00FFFFFF;
    auto const image = pixels(iconFor(imageOf(16, 16, values)));
    ASSERT_EQ(image.size(), QSize(16, 16));
    EXPECT_EQ(image.pixel(0, 0), 0xFFFF0000);
    EXPECT_EQ(image.pixel(15, 0), 0x8000FF00);
    EXPECT_EQ(qAlpha(image.pixel(0, 15)), 0);
    EXPECT_EQ(image.pixel(15, 15), 0xFF0000FF);
}

TEST(BitmapIconTest, ALargePictureIsScaledDownAndASmallOneStandsInTheMiddle)
{
    EXPECT_EQ(pixels(iconFor(plain(64, 0xFF00FF00))).size(), QSize(16, 16));
    EXPECT_EQ(pixels(iconFor(plain(64, 0xFF00FF00))).pixel(8, 8), 0xFF00FF00);
    EXPECT_EQ(pixels(iconFor(plain(64, 0xFF00FF00)), 2).size(), QSize(32, 32));

    auto const small = painted(iconFor(plain(8, 0xFFFF0000)));
    EXPECT_EQ(small.pixel(4, 4), 0xFFFF0000);
    EXPECT_EQ(small.pixel(11, 11), 0xFFFF0000);
    EXPECT_EQ(qAlpha(small.pixel(3, 8)), 0);
    EXPECT_EQ(qAlpha(small.pixel(12, 8)), 0);
}

TEST(BitmapIconTest, APictureKeepsItsShape)
{
    auto const wide = painted(iconFor(imageOf(64, 32, Pixels(64 * 32, 0xFFFF0000))));
    EXPECT_EQ(wide.pixel(0, 8), 0xFFFF0000);
    EXPECT_EQ(wide.pixel(15, 8), 0xFFFF0000);
    EXPECT_EQ(qAlpha(wide.pixel(8, 3)), 0);
    EXPECT_EQ(qAlpha(wide.pixel(8, 12)), 0);
}

TEST(BitmapIconTest, WhatIsNoPictureShowsTheDrawingOfAnApplication)
{
    auto const drawing = pixels(iconFor(Image::systemSymbol("app")));
    ASSERT_FALSE(isEmpty(drawing));
    Image const broken[] { { Bitmap {}, 0, {}, 1 }, { Bitmap { 16, 16, nullptr }, 0, {}, 1 },
        imageOf(16, 16, Pixels(255, 0xFFFF0000)), imageOf(0, 16, Pixels(256, 0xFFFF0000)),
        imageOf(16, -16, Pixels(256, 0xFFFF0000)), imageOf(1 << 30, 1 << 30, Pixels(4, 0xFFFF0000)) };
    for (auto const& image : broken)
        EXPECT_EQ(pixels(iconFor(image)), drawing);
}

TEST(BitmapIconTest, TheIconOutlivesWhatItWasMadeFrom)
{
    auto image = std::make_unique<Image>(plain(16, 0xFF123456));
    auto const icon = iconFor(*image);
    image.reset();
    EXPECT_EQ(pixels(icon).pixel(3, 3), 0xFF123456);
}

TEST(OpacityTest, APictureLetsThroughWhatItsOpacityLeaves)
{
    struct Row {
        double opacity;
        std::uint32_t colour;
        int alpha;
    };
    Row const rows[] {
        { 1, 0xFFFF0000, 255 },
        { 0.4, 0xFFFF0000, 102 },
        { 0.5, 0x80FF0000, 64 },
        { 0, 0xFFFF0000, 0 },
    };
    for (auto const& [opacity, colour, alpha] : rows) {
        for (qreal const scale : { 1.0, 2.0 }) {
            auto const image = pixels(iconFor(faded(plain(32, colour), opacity)), scale);
            ASSERT_EQ(image.width(), static_cast<int>(16 * scale)) << opacity;
            EXPECT_NEAR(qAlpha(image.pixel(8, 8)), alpha, 1) << opacity;
            EXPECT_EQ(qRed(image.pixel(8, 8)), alpha ? 255 : 0) << opacity;
        }
    }
}

TEST(OpacityTest, DrawingsAndFilesFadeToo)
{
    QTemporaryDir const folder;
    QString const picture = folder.filePath(QStringLiteral("red.png"));
    QImage red(32, 32, QImage::Format_ARGB32);
    red.fill(Qt::red);
    ASSERT_TRUE(red.save(picture));
    QFile entry(folder.filePath(QStringLiteral("entry.desktop")));
    ASSERT_TRUE(entry.open(QIODevice::WriteOnly));
    entry.write("[Desktop Entry]\nType=Application\nName=X\nExec=true\nIcon=" + picture.toUtf8() + "\n");
    entry.close();
    auto const file = Image::iconForFile(fileURLFrom(QFile::encodeName(entry.fileName())), 16);
    EXPECT_EQ(pixels(iconFor(file)).pixel(8, 8), 0xFFFF0000);
    auto const fadedFile = pixels(iconFor(faded(file, 0.4)));
    EXPECT_NEAR(qAlpha(fadedFile.pixel(8, 8)), 102, 1);
    EXPECT_EQ(qRed(fadedFile.pixel(8, 8)), 255);

    auto const full = pixels(iconFor(Image::systemSymbol("app")), 2);
    auto const half = pixels(iconFor(faded(Image::systemSymbol("app"), 0.5)), 2);
    ASSERT_EQ(half.size(), full.size());
    for (int y = 0; y < full.height(); ++y) {
        for (int x = 0; x < full.width(); ++x)
            ASSERT_NEAR(qAlpha(half.pixel(x, y)), qAlpha(full.pixel(x, y)) / 2, 1) << x << "," << y;
    }
}

TEST(OpacityTest, WhatIsPaintedIsAsFaded)
{
    auto const small = painted(iconFor(faded(plain(8, 0xFFFF0000), 0.4)));
    EXPECT_NEAR(qAlpha(small.pixel(8, 8)), 102, 1);
    EXPECT_EQ(qAlpha(small.pixel(2, 2)), 0);
}

}
}
