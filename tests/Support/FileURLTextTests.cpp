#include "Support/FileURLText.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

std::string pathOf(std::string_view text)
{
    auto const url = fileURLFromText(text);
    return url ? url->path() : "none";
}

TEST(FileURLTextTest, TheHostMayBeMissingEmptyOrThisOne)
{
    EXPECT_EQ(pathOf("file:///a/b.txt"), "/a/b.txt");
    EXPECT_EQ(pathOf("file:/a/b.txt"), "/a/b.txt");
    EXPECT_EQ(pathOf("file://localhost/a"), "/a");
    EXPECT_EQ(pathOf("file:///"), "/");
}

TEST(FileURLTextTest, EscapesAreExactBytes)
{
    EXPECT_EQ(pathOf("file:///a%20b"), "/a b");
    EXPECT_EQ(pathOf("file:///%C3%a9"), "/é");
    EXPECT_EQ(pathOf("file:///%FF%fe%25"), "/\xFF\xFE%");
    EXPECT_EQ(pathOf("file:///a%2Fb"), "/a/b");
    EXPECT_EQ(pathOf("file:///raw é"), "/raw é");
    EXPECT_EQ(pathOf("file:///a+b"), "/a+b");
}

TEST(FileURLTextTest, QuestionAndFragmentAreNoPartOfThePath)
{
    EXPECT_EQ(pathOf("file:///a?b"), "/a");
    EXPECT_EQ(pathOf("file:///a#b"), "/a");
    EXPECT_EQ(pathOf("file:///a%3Fb%23c"), "/a?b#c");
}

TEST(FileURLTextTest, AFoldersSlashIsTheDirectoryMark)
{
    auto const url = fileURLFromText("file:///a/b/");
    ASSERT_TRUE(url);
    EXPECT_EQ(url->path(), "/a/b");
    EXPECT_TRUE(url->hasDirectoryPath());
}

TEST(FileURLTextTest, WhatIsNoFileOfThisMachineIsNone)
{
    for (std::string_view const text : { "", "file:", "file://", "/a/b", "http:///a", "trash:///a", "smb://server/a",
             "file://other/a", "file://localhosts/a", "file:a/b", "xfile:///a" })
        EXPECT_EQ(pathOf(text), "none") << text;
}

TEST(FileURLTextTest, BrokenEscapesAndNulAreNone)
{
    for (std::string_view const text :
        { "file:///a%", "file:///a%2", "file:///a%zz", "file:///a%2g", "file:///a%00b", "file:///a% 20" })
        EXPECT_EQ(pathOf(text), "none") << text;
    EXPECT_EQ(pathOf(std::string_view("file:///a\0b", 11)), "none");
}

}
}
