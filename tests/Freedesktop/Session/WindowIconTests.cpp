#include "Freedesktop/Session/WindowIcon.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace marrowick {

namespace {

using Numbers = std::vector<std::uint32_t>;

/// One picture of a property: its size, and `colour` for every pixel.
Numbers picture(std::uint32_t width, std::uint32_t height, std::uint32_t colour = 0xFF000000)
{
    Numbers numbers { width, height };
    numbers.insert(numbers.end(), std::size_t { width } * height, colour);
    return numbers;
}

Numbers operator+(Numbers first, Numbers const& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// "WIDTHxHEIGHT", or "none".
std::string sizeOf(std::optional<Bitmap> const& bitmap)
{
    return bitmap ? std::to_string(bitmap->width) + "x" + std::to_string(bitmap->height) : "none";
}

struct IconCase {
    char const* rule;
    Numbers property;
    int side;
    char const* chosen;
};

std::vector<IconCase> const cases {
    { "empty", {}, 32, "none" },
    { "a width alone", { 16 }, 32, "none" },
    { "a size alone", { 16, 16 }, 32, "none" },
    { "a size of nothing", { 0, 0, 0xFF000000 }, 32, "none" },
    { "no width", { 0, 16, 1, 2, 3, 4 }, 32, "none" },
    { "no height", { 16, 0, 1, 2, 3, 4 }, 32, "none" },
    { "one pixel", { 1, 1, 0xFF123456 }, 32, "1x1" },
    { "one pixel is missing", { 2, 2, 1, 2, 3 }, 32, "none" },
    { "one number too many", picture(2, 2) + Numbers { 7 }, 32, "2x2" },
    { "a size at the end", picture(2, 2) + Numbers { 64, 64 }, 32, "2x2" },
    { "the largest number there is", { 0xFFFFFFFF, 0xFFFFFFFF, 1, 2 }, 32, "none" },
    { "a product that wraps to four", { 0x80000002, 0x80000002, 1, 2, 3, 4 }, 32, "none" },
    { "a product that wraps to nothing", { 0x10000, 0x10000, 1, 2, 3, 4 }, 32, "none" },
    { "negative", { static_cast<std::uint32_t>(-1), 1, 1 }, 32, "none" },
    { "as large as pictures may be", picture(1024, 1), 32, "1024x1" },
    { "larger than pictures may be", picture(1025, 1), 32, "none" },
    { "higher than pictures may be", picture(1, 1025), 32, "none" },
    { "what comes before nonsense", picture(16, 16) + Numbers { 0, 5 } + picture(32, 32), 32, "16x16" },
    { "what comes before the cut", picture(16, 16) + Numbers { 48, 48, 1, 2, 3 }, 32, "16x16" },
    { "the size asked for", picture(16, 16) + picture(32, 32) + picture(48, 48), 32, "32x32" },
    { "the smallest that is large enough", picture(256, 256) + picture(48, 48) + picture(16, 16), 32, "48x48" },
    { "the largest where none is large enough", picture(8, 8) + picture(24, 24) + picture(16, 16), 32, "24x24" },
    { "the longer side counts", picture(20, 40) + picture(33, 33), 40, "20x40" },
    { "a side of nothing", picture(16, 16) + picture(8, 8), 0, "8x8" },
    { "a negative side", picture(16, 16) + picture(8, 8), -5, "8x8" },
};

}

TEST(WindowIconTest, TheBestPictureIsChosenAndNonsenseLeftOut)
{
    for (auto const& [rule, property, side, chosen] : cases)
        EXPECT_EQ(sizeOf(bestIcon(property, side)), chosen) << rule;
}

TEST(WindowIconTest, ThePixelsAreThoseOfTheChosenPicture)
{
    auto const property = picture(1, 1, 0xFF0000FF) + Numbers { 2, 2, 0x11111111, 0x22222222, 0x33333333, 0x44444444 }
        + picture(3, 3, 0xFF00FF00);
    auto const icon = bestIcon(property, 2);
    ASSERT_TRUE(icon && icon->pixels);
    EXPECT_THAT(*icon->pixels, testing::ElementsAre(0x11111111u, 0x22222222u, 0x33333333u, 0x44444444u));
}

TEST(WindowIconTest, TheFirstOfTwoOfOneSizeIsTaken)
{
    auto const icon = bestIcon(picture(16, 16, 0xFF111111) + picture(16, 16, 0xFF222222), 16);
    ASSERT_TRUE(icon && icon->pixels);
    EXPECT_EQ(icon->pixels->front(), 0xFF111111u);
}

TEST(WindowIconTest, PicturesWithoutEndAreGoneThrough)
{
    Numbers property;
    for (int i = 0; i < 20'000; ++i)
        property.insert(property.end(), { 1, 1, 0xFF000000 });
    EXPECT_EQ(sizeOf(bestIcon(property + picture(16, 16), 16)), "16x16");
}

}
