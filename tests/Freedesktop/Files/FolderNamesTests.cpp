#include "Freedesktop/Files/FreedesktopFileManager.h"

#include "Fakes/NamesOfFolders.h"
#include "Fakes/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace marrowick {
namespace {

using Names = std::vector<std::string>;

class FolderNamesTest : public testing::Test {
protected:
    /// In the file system's order. What the interface makes of a whole listing is the same.
    Names names(FileURL const& directory) const
    {
        auto const names = namesOfFolders(*fileManager.walk(directory));
        auto const fromListing = namesOfFolders(*fileManager.FileManager::walk(directory));
        EXPECT_TRUE(names && fromListing);
        EXPECT_EQ(names.value(), fromListing.value());
        return names.value();
    }
    Names sortedNames() const
    {
        auto sorted = names(folder.url());
        std::sort(sorted.begin(), sorted.end());
        return sorted;
    }

    TemporaryFolder folder;
    FreedesktopFileManager fileManager;
};

TEST_F(FolderNamesTest, VisibleFoldersAreNamedByTheirBytesAndNothingElse)
{
    EXPECT_EQ(sortedNames(), Names {});
    folder.folder("two\nlines");
    folder.folder("broken \xFF");
    folder.folder("with.dot");
    folder.folder(std::string(255, 'x'));
    folder.folder("plain/inside");
    folder.folder(".hidden folder");
    folder.file("file");
    folder.fifo("fifo");
    folder.link("link", "plain");
    for (auto const* const package : { "A.app", "A.prefPane", "A.bundle", "A.framework", "A.plugin", "A.rtfd" })
        folder.folder(package);
    folder.folder("A.APP");
    EXPECT_EQ(
        sortedNames(), (Names { "A.APP", "broken \xFF", "plain", "two\nlines", "with.dot", std::string(255, 'x') }));
    EXPECT_EQ(names(folder / "link"), Names { "inside" });
}

TEST_F(FolderNamesTest, FoldersThatTheHiddenFileNamesAreLeftOut)
{
    for (auto const* const name : { "a", "b", "c" })
        folder.folder(name);
    folder.file(".hidden", "b\n\nnowhere\nc");
    EXPECT_EQ(sortedNames(), Names { "a" });
    folder.file(".hidden", "");
    EXPECT_EQ(sortedNames(), (Names { "a", "b", "c" }));
}

TEST_F(FolderNamesTest, NamesAreAddedToThoseThatAreThere)
{
    folder.folder("b");
    folder.folder("c");
    folder.file(".hidden", "b");
    for (auto const& walked : { fileManager.walk(folder.url()), fileManager.FileManager::walk(folder.url()) }) {
        NameList names;
        // A hidden name of another folder is none here.
        names.add("b");
        EXPECT_TRUE(walked->addNamesOfFolders(names));
        EXPECT_TRUE(walked->folder("b")->addNamesOfFolders(names));
        ASSERT_EQ(names.size(), 2U);
        EXPECT_EQ(names[0], "b");
        EXPECT_EQ(names[1], "c");
    }
}

TEST_F(FolderNamesTest, FolderLargerThanOneReadIsWhole)
{
    for (int number = 0; number < 1500; ++number)
        folder.folder(std::to_string(number) + std::string(static_cast<std::size_t>(number) % 200, '-'));
    EXPECT_EQ(sortedNames().size(), 1500U);
}

TEST_F(FolderNamesTest, FoldersAreFoundFromTheOneAbove)
{
    folder.folder("top/a/b/c");
    folder.link("top/link", "a");
    auto const walked = fileManager.walk(folder / "top");
    auto const listed = fileManager.FileManager::walk(folder / "top");
    for (auto const* const top : { walked.get(), listed.get() }) {
        EXPECT_EQ(namesOfFolders(*top->folder("a")).value(), Names { "b" });
        EXPECT_EQ(namesOfFolders(*top->folder("a")->folder("b")).value(), Names { "c" });
        EXPECT_EQ(namesOfFolders(*top->folder("link")).value(), Names { "b" });
        auto const missing = namesOfFolders(*top->folder("missing"));
        ASSERT_FALSE(missing);
        EXPECT_EQ(missing.error().kind, ErrorKind::notFound);
        EXPECT_NE(missing.error().message.find("missing"), std::string::npos) << missing.error().message;
        EXPECT_FALSE(namesOfFolders(*top->folder("missing")->folder("below")));
    }
    // Whoever is on the way down stays in the tree wherever that goes.
    std::filesystem::rename((folder / "top").path(), (folder / "moved").path());
    EXPECT_EQ(namesOfFolders(*walked->folder("a")).value(), Names { "b" });
}

TEST_F(FolderNamesTest, WhatCannotBeListedSaysWhy)
{
    auto const failure = [&](FileURL const& url) {
        auto const outcome = namesOfFolders(*fileManager.walk(url));
        auto const fromListing = namesOfFolders(*fileManager.FileManager::walk(url));
        EXPECT_FALSE(fromListing);
        return outcome ? std::nullopt : std::optional(outcome.error().kind);
    };
    EXPECT_EQ(failure(folder / "missing"), ErrorKind::notFound);
    EXPECT_EQ(failure(FileURL()), ErrorKind::notFound);
    EXPECT_EQ(failure(FileURL(folder.url().path() + std::string("\0x", 2))), ErrorKind::notFound);
    EXPECT_NE(failure(folder.file("file")), std::nullopt);
    EXPECT_NE(failure(folder.fifo("fifo")), std::nullopt);
}

}
}
