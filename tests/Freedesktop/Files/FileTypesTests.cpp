#include "Fakes/TemporaryFolder.h"
#include "Freedesktop/Files/FreedesktopFileTypes.h"

#include <string>

#include <gtest/gtest.h>

// Asking about a link or a FIFO, the library keeps a few bytes until the process ends.
extern "C" char const* __lsan_default_suppressions();
extern "C" char const* __lsan_default_suppressions()
{
    return "leak:libgio-2.0.so";
}

namespace marrowick {
namespace {

class FileTypesTest : public testing::Test {
protected:
    std::string identifier(FileURL const& url) const
    {
        auto const type = types.type(url);
        return type ? type->identifier : "none";
    }

    TemporaryFolder folder;
    FreedesktopFileTypes types;
};

TEST_F(FileTypesTest, TheTypeIsTheItemsOwn)
{
    EXPECT_EQ(identifier(folder.file("a.txt", "text")), "text/plain");
    EXPECT_EQ(identifier(folder.file("a.pdf", "%PDF-1.4")), "application/pdf");
    EXPECT_EQ(identifier(folder.folder("directory.txt")), "inode/directory");
    EXPECT_EQ(identifier(folder.link("link.txt", "a.txt")), "inode/symlink");
    EXPECT_EQ(identifier(folder.fifo("fifo.txt")), "inode/fifo");
}

TEST_F(FileTypesTest, ATypeIsDescribedInWords)
{
    auto const type = types.type(folder.file("a.pdf", "%PDF-1.4"));
    ASSERT_TRUE(type);
    EXPECT_EQ(type->localizedDescription, "PDF document");
}

TEST_F(FileTypesTest, WhatIsNotThereOrOfNoKnownTypeHasNone)
{
    EXPECT_EQ(identifier(folder / "missing.txt"), "none");
    EXPECT_EQ(identifier(FileURL("relative.txt")), "none");
    EXPECT_EQ(identifier(FileURL("")), "none");
    EXPECT_EQ(identifier(folder.file("nonsense", std::string("\x00\x01\x02\xFE\xFF\x00", 6))), "none");
}

TEST_F(FileTypesTest, AnExtensionAloneTellsWhetherThereIsText)
{
    for (auto const* extension : { "txt", "md", "html", "cpp", "py", "sh", "TXT" })
        EXPECT_TRUE(types.isText(extension)) << extension;
    for (auto const* extension : { "", "png", "pdf", "zip", "app", "marrowick-unknown", "/", "\xFF" })
        EXPECT_FALSE(types.isText(extension)) << extension;
    EXPECT_FALSE(types.isText(std::string_view("txt\0", 4)));
}

}
}
