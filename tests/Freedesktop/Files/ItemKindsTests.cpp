#include "Freedesktop/Files/FreedesktopFileManager.h"
#include "Freedesktop/Files/ItemValues.h"

#include "Fakes/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <map>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace marrowick {
namespace {

constexpr auto keys = ResourceKey::isDirectory | ResourceKey::isPackage | ResourceKey::isRegularFile;

/// What items are is told when a folder is listed, and when one item is asked; both must say the same, also where the
/// listing does not tell an item's kind.
class ItemKindsTest : public testing::Test {
protected:
    static ResourceValues expected(bool isDirectory, bool isPackage, bool isRegularFile)
    {
        ResourceValues values;
        values.isDirectory = isDirectory;
        values.isPackage = isPackage;
        values.isRegularFile = isRegularFile;
        return values;
    }

    static void expectSame(ResourceValues const& values, ResourceValues const& expected, std::string const& what)
    {
        EXPECT_EQ(values.isDirectory, expected.isDirectory) << what;
        EXPECT_EQ(values.isPackage, expected.isPackage) << what;
        EXPECT_EQ(values.isRegularFile, expected.isRegularFile) << what;
        EXPECT_EQ(values.isApplication, std::nullopt) << what;
    }

    void expectInEveryWay(std::map<std::string, ResourceValues> const& items) const
    {
        auto const listing = files.contentsOfDirectory(folder.url(), keys, HiddenItems::included);
        ASSERT_TRUE(listing);
        EXPECT_EQ(listing.value().size(), items.size());
        for (auto const& item : listing.value()) {
            std::string const name(item.url.lastPathComponent());
            auto const found = items.find(name);
            ASSERT_NE(found, items.end()) << name;
            expectSame(item.values, found->second, name + ", listed");
            expectSame(files.resourceValues(item.url, keys), found->second, name + ", asked");
            ItemPlace const place { AT_FDCWD, item.url.path().c_str(), item.url.path() };
            expectSame(readResourceValues(place, ItemKind::unknown, keys), found->second, name + ", of unknown kind");
        }
    }

    TemporaryFolder folder;
    FreedesktopFileManager files;
};

TEST_F(ItemKindsTest, OnlyRegularFilesAreRegularFiles)
{
    folder.file("file", "x");
    folder.file(".hidden file");
    folder.folder("folder");
    folder.fifo("fifo");
    folder.link("to file", "file");
    folder.link("to folder", "folder");
    folder.link("dangling", "missing");
    int const socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address { .sun_family = AF_UNIX, .sun_path = {} };
    auto const path = (folder / "socket").path();
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    ::close(socket);
    auto const file = expected(false, false, true);
    auto const other = expected(false, false, false);
    expectInEveryWay({ { "file", file }, { ".hidden file", file }, { "folder", expected(true, false, false) },
        { "fifo", other }, { "to file", other }, { "to folder", other }, { "dangling", other }, { "socket", other } });
    expectSame(files.resourceValues(FileURL("/dev/null"), keys), other, "device");
}

TEST_F(ItemKindsTest, PackagesAreDirectoriesWithAPackagesExtension)
{
    std::map<std::string, ResourceValues> items;
    for (auto const* const name : { "A.app", "B.prefPane", "C.bundle", "D.framework", "E.plugin", "F.rtfd",
             ".hidden.app", "a.b.app", "\xFF.app" })
        items[folder.folder(name).lastPathComponent().data()] = expected(true, true, false);
    for (auto const* const name :
        { "folder", "app", ".app", "A.APP", "B.prefpane", "name.app.", "x.app y", "rtfd.txt" })
        items[folder.folder(name).lastPathComponent().data()] = expected(true, false, false);
    folder.file("file.app");
    items["file.app"] = expected(false, false, true);
    folder.link("link.app", "A.app");
    items["link.app"] = expected(false, false, false);
    expectInEveryWay(items);
    // The name alone counts, not that of a folder above it.
    expectSame(files.resourceValues(folder.folder("A.app/inside"), keys), expected(true, false, false), "inside");
}

TEST_F(ItemKindsTest, WhatIsNotAskedForIsNotTold)
{
    folder.folder("A.app");
    auto const values = files.resourceValues(folder / "A.app", ResourceKey::isDirectory);
    EXPECT_EQ(values.isDirectory, true);
    EXPECT_EQ(values.isPackage, std::nullopt);
    EXPECT_EQ(values.isRegularFile, std::nullopt);
    EXPECT_EQ(files.resourceValues(folder / "missing", keys).isRegularFile, std::nullopt);
}

}
}
