#include "Fakes/DiskTest.h"
#include "UI/TextPreview.h"

#include <cstddef>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

constexpr std::size_t largestFile = std::size_t { 16 } * 1024 * 1024;

class TextPreviewTest : public DiskTest {
protected:
    std::string previewOf(std::string const& content) { return textPreview(folder.file("text", content)); }

    /// A file of exactly `size` bytes that begins with `beginning` and goes on with `filling`.
    std::string previewOfLarge(std::string content, std::size_t size, char filling)
    {
        content.resize(size, filling);
        return previewOf(content);
    }
};

std::string repeated(std::string const& text, int times)
{
    std::string result;
    for (int i = 0; i < times; ++i)
        result += text;
    return result;
}

TEST_F(TextPreviewTest, AShortTextIsShownWhole)
{
    EXPECT_EQ(previewOf(""), "");
    EXPECT_EQ(previewOf("line one\nline two\n"), "line one\nline two\n");
}

TEST_F(TextPreviewTest, OfFiveThousandCharactersTheFirstFourThousandAreShown)
{
    EXPECT_EQ(previewOf(std::string(5000, 'x')), std::string(4000, 'x'));
    EXPECT_EQ(previewOf(std::string(4000, 'x')), std::string(4000, 'x'));
}

TEST_F(TextPreviewTest, CharactersCountAndNotBytes)
{
    EXPECT_EQ(previewOf(repeated("é", 5000)), repeated("é", 4000));
    EXPECT_EQ(previewOf(repeated("😀", 5000)), repeated("😀", 4000));
}

TEST_F(TextPreviewTest, ATextThatIsNotUTF8IsEmpty)
{
    EXPECT_EQ(previewOf("caf\xE9"), "");
    EXPECT_EQ(previewOf("\xC3"), "");
    EXPECT_EQ(previewOf("\xED\xA0\x80"), "");
    EXPECT_EQ(previewOf("\xC0\xAF"), "");
}

TEST_F(TextPreviewTest, AWrongByteFarBehindWhatIsShownCountsToo)
{
    EXPECT_EQ(previewOf(std::string(100'000, 'x') + '\xFF'), "");
}

TEST_F(TextPreviewTest, AFileOfSixteenMebibytesIsLookedAtWhole)
{
    EXPECT_EQ(previewOfLarge("", largestFile, 'x'), std::string(4000, 'x'));
    EXPECT_EQ(previewOfLarge(std::string(5000, 'x'), largestFile, '\xFF'), "");
}

TEST_F(TextPreviewTest, OfALargerFileOnlyWhatIsShownIsLookedAt)
{
    EXPECT_EQ(previewOfLarge(std::string(5000, 'x'), largestFile + 1, '\xFF'), std::string(4000, 'x'));
    EXPECT_EQ(previewOfLarge(std::string(3999, 'x'), largestFile + 1, '\xFF'), "");
    EXPECT_EQ(previewOfLarge(repeated("😀", 4000), largestFile + 1, '\xFF'), repeated("😀", 4000));
    EXPECT_EQ(previewOfLarge("a" + repeated("😀", 5000), largestFile + 1, 'x'), "a" + repeated("😀", 3999));
}

TEST_F(TextPreviewTest, AHugeFileIsNotRead)
{
    folder.file("huge", std::string(5000, 'x'));
    std::filesystem::resize_file((folder / "huge").path(), std::uintmax_t { 5 } * 1000 * 1000 * 1000);
    EXPECT_EQ(textPreview(folder / "huge"), std::string(4000, 'x'));
}

TEST_F(TextPreviewTest, WhatCannotBeReadIsEmpty)
{
    EXPECT_EQ(textPreview(folder / "missing"), "");
    EXPECT_EQ(textPreview(folder.folder("directory")), "");
    EXPECT_EQ(textPreview(folder.fifo("fifo")), "");
    auto const locked = folder.file("locked", "text");
    desktop.fileContents.inaccessible.insert(locked);
    EXPECT_EQ(textPreview(locked), "");
}

TEST_F(TextPreviewTest, ALinkShowsWhatItLeadsTo)
{
    folder.file("text", "content");
    EXPECT_EQ(textPreview(folder.link("link", "text")), "content");
    EXPECT_EQ(textPreview(folder.link("dangling", "nothing")), "");
}

}
}
