#include "Platform/FileURL.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

TEST(FileURLTest, TrailingSlashesBecomeTheDirectoryMark)
{
    FileURL const url("/a/b//");
    EXPECT_EQ(url.path(), "/a/b");
    EXPECT_TRUE(url.hasDirectoryPath());
    EXPECT_FALSE(FileURL("/a/b").hasDirectoryPath());
    EXPECT_TRUE(FileURL("/a/b", true).hasDirectoryPath());
}

TEST(FileURLTest, TheRootKeepsItsSlash)
{
    EXPECT_EQ(FileURL("/").path(), "/");
    EXPECT_EQ(FileURL("//").path(), "/");
    EXPECT_EQ(FileURL("/").lastPathComponent(), "/");
    EXPECT_EQ(FileURL("/").deletingLastPathComponent(), FileURL("/"));
    EXPECT_EQ(FileURL("/").appendingPathComponent("a").path(), "/a");
}

TEST(FileURLTest, EqualityAndOrderIgnoreTheDirectoryMark)
{
    EXPECT_EQ(FileURL("/a", true), FileURL("/a", false));
    EXPECT_EQ(FileURL("/a/") <=> FileURL("/a"), std::strong_ordering::equal);
    EXPECT_NE(FileURL("/a"), FileURL("/A"));
    EXPECT_LT(FileURL("/a"), FileURL("/b"));
}

TEST(FileURLTest, NothingElseIsNormalised)
{
    for (auto const* path : { "/a//b", "/a/./b", "/a/../b", "relative/x", "~/x", "" })
        EXPECT_EQ(FileURL(path).path(), path);
}

TEST(FileURLTest, BytesThatAreNoTextAreKept)
{
    std::string const name = "\xFF\xC3(\x80 end";
    FileURL const url = FileURL("/a").appendingPathComponent(name);
    EXPECT_EQ(url.path(), "/a/" + name);
    EXPECT_EQ(url.lastPathComponent(), name);
}

TEST(FileURLTest, TheEmptyPathHasAnEmptyName)
{
    FileURL const url("", true);
    EXPECT_EQ(url.path(), "");
    EXPECT_EQ(url.lastPathComponent(), "");
    EXPECT_EQ(url.pathExtension(), "");
    EXPECT_EQ(url.appendingPathComponent("a").path(), "a");
}

TEST(FileURLTest, TheFolderOfAnItemIsWhatStandsBeforeItsName)
{
    EXPECT_EQ(FileURL("/a/b/c").deletingLastPathComponent().path(), "/a/b");
    EXPECT_EQ(FileURL("/a").deletingLastPathComponent().path(), "/");
    EXPECT_TRUE(FileURL("/a/b").deletingLastPathComponent().hasDirectoryPath());
    EXPECT_EQ(FileURL("a").deletingLastPathComponent().path(), "");
}

struct ExtensionCase {
    std::string name;
    std::string extension;
    std::string rest;
};

class FileURLExtensionTest : public testing::TestWithParam<ExtensionCase> { };

TEST_P(FileURLExtensionTest, IsWhatFollowsTheLastDotUnlessThatDotIsFirstOrLast)
{
    auto const& [name, extension, rest] = GetParam();
    auto const url = FileURL("/folder.with.dots").appendingPathComponent(name);
    EXPECT_EQ(url.pathExtension(), extension);
    EXPECT_EQ(pathExtensionOf(name), extension);
    EXPECT_EQ(url.nameWithoutExtension(), rest);
}

INSTANTIATE_TEST_SUITE_P(Names, FileURLExtensionTest,
    testing::Values(ExtensionCase { "a.txt", "txt", "a" }, ExtensionCase { "a.tar.gz", "gz", "a.tar" },
        ExtensionCase { "a", "", "a" }, ExtensionCase { ".hidden", "", ".hidden" }, ExtensionCase { "a.", "", "a." },
        ExtensionCase { "..", "", ".." }, ExtensionCase { "..a", "a", "." }, ExtensionCase { "a..", "", "a.." },
        ExtensionCase { ".a.b", "b", ".a" }, ExtensionCase { ".", "", "." }, ExtensionCase { "a.b c", "b c", "a" },
        ExtensionCase { "x.\xFF\xFE", "\xFF\xFE", "x" }, ExtensionCase { "x.SH", "SH", "x" }));

}
}
