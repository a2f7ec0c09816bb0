#include "Freedesktop/Transfer/TransferTest.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace marrowick {

namespace {

using MoveTest = TransferTest;
using Names = std::vector<std::string>;

ino_t inodeOf(FileURL const& url)
{
    struct stat status { };
    EXPECT_EQ(::lstat(url.path().c_str(), &status), 0);
    return status.st_ino;
}

}

TEST_F(MoveTest, WithinAFileSystemTheItemItselfMoves)
{
    auto const tree = makeTree();
    auto const inode = inodeOf(tree);
    auto const to = folder.folder("into");
    EXPECT_EQ(messageOf(transfer.moveItem(tree, folder / "into/moved")), "done");
    EXPECT_EQ(inodeOf(folder / "into/moved"), inode);
    EXPECT_FALSE(isThere(tree));
    EXPECT_EQ(namesIn(to), Names { "moved" });
}

TEST_F(MoveTest, AcrossFileSystemsNothingStaysBehind)
{
    ASSERT_NE(deviceOf(folder.url()), deviceOf(elsewhere.url()));
    auto const tree = makeTree();
    EXPECT_EQ(messageOf(transfer.moveItem(tree, elsewhere / "moved")), "done");
    EXPECT_TRUE(isWholeTree(elsewhere / "moved"));
    EXPECT_EQ(inodeOf(elsewhere / "moved/first"), inodeOf(elsewhere / "moved/inner/again"));
    EXPECT_EQ(namesIn(elsewhere.url()), Names { "moved" });
    EXPECT_EQ(namesIn(folder.url()), Names {});
}

TEST_F(MoveTest, LinksMoveAsLinks)
{
    folder.file("target", "kept");
    for (auto const& to : { folder / "moved", elsewhere / "moved" }) {
        auto const link = folder.link("link", (folder / "target").path());
        EXPECT_EQ(messageOf(transfer.moveItem(link, to)), "done");
        EXPECT_FALSE(isThere(link));
        char text[4096] {};
        EXPECT_GT(::readlink(to.path().c_str(), text, sizeof text - 1), 0);
        EXPECT_EQ(text, (folder / "target").path());
    }
    EXPECT_EQ(contentOf(folder / "target"), "kept");
}

TEST_F(MoveTest, NameThatIsTakenStopsIt)
{
    auto const item = folder.file("item", "item");
    folder.file("file", "other");
    folder.folder("folder");
    folder.link("dangling", "nowhere");
    ASSERT_EQ(::symlink("nowhere", (elsewhere / "dangling").path().c_str()), 0);
    for (auto const& to : { folder / "file", folder / "folder", folder / "dangling", elsewhere / "dangling", item }) {
        auto const moved = transfer.moveItem(item, to);
        ASSERT_FALSE(moved) << to.path();
        EXPECT_EQ(moved.error().kind, ErrorKind::alreadyExists);
        auto const copied = transfer.copyItem(item, to);
        ASSERT_FALSE(copied) << to.path();
        EXPECT_EQ(copied.error().kind, ErrorKind::alreadyExists);
        auto const alias = transfer.createAlias(to, item);
        ASSERT_FALSE(alias) << to.path();
        EXPECT_EQ(alias.error().kind, ErrorKind::alreadyExists);
    }
    EXPECT_EQ(contentOf(item), "item");
    EXPECT_EQ(contentOf(folder / "file"), "other");
    EXPECT_EQ(namesIn(elsewhere.url()), Names { "dangling" });
}

TEST_F(MoveTest, FolderNeverGoesIntoItself)
{
    auto const tree = makeTree();
    folder.link("way", (folder / "tree/inner").path());
    for (auto const& to :
        { folder / "tree/copy", folder / "tree/inner/copy", folder / "way/copy", folder / "tree/../tree/copy" }) {
        for (auto const& outcome : { transfer.moveItem(tree, to), transfer.copyItem(tree, to) }) {
            ASSERT_FALSE(outcome) << to.path();
            EXPECT_EQ(outcome.error().kind, ErrorKind::intoItself) << outcome.error().message;
            EXPECT_NE(outcome.error().message.find("\u201Ctree\u201D into itself."), std::string::npos);
        }
    }
    EXPECT_TRUE(isWholeTree(tree));
}

TEST_F(MoveTest, FolderNeverGoesIntoItselfThroughASecondMount)
{
    SKIP_UNLESS_ROOT_MAY_MOUNT();
    auto const tree = makeTree();
    auto const second = folder.folder("second");
    ASSERT_EQ(runCommand({ "mount", "--bind", (folder / "tree/inner").path(), second.path() }).status, 0);
    for (auto const& outcome :
        { transfer.copyItem(tree, folder / "second/copy"), transfer.moveItem(tree, folder / "second/copy") }) {
        EXPECT_FALSE(outcome);
        EXPECT_EQ(outcome.error().kind, ErrorKind::intoItself) << outcome.error().message;
    }
    EXPECT_EQ(runCommand({ "umount", second.path() }).status, 0);
    EXPECT_TRUE(isWholeTree(tree));
}

TEST_F(MoveTest, ItemThatIsNotThereIsNamed)
{
    auto const outcome = transfer.moveItem(folder / "gone", folder / "other");
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error().kind, ErrorKind::notFound);
    EXPECT_EQ(outcome.error().message, "Could not move \u201Cgone\u201D: No such file or directory.");
}

TEST_F(MoveTest, FolderThatIsNotThereIsNamed)
{
    auto const item = folder.file("item");
    EXPECT_EQ(messageOf(transfer.copyItem(item, folder / "gone/item")),
        "Could not copy \u201Citem\u201D into \u201Cgone\u201D: No such file or directory.");
}

TEST_F(MoveTest, RemovalTakesTheTreeAndNothingBehindItsLinks)
{
    auto const tree = makeTree();
    folder.folder("outside");
    folder.file("outside/file", "kept");
    folder.link("tree/inner/way", (folder / "outside").path());
    EXPECT_EQ(messageOf(transfer.removeItem(tree)), "done");
    EXPECT_FALSE(isThere(tree));
    auto const link = folder.link("link", (folder / "outside").path());
    EXPECT_EQ(messageOf(transfer.removeItem(link)), "done");
    EXPECT_FALSE(isThere(link));
    EXPECT_EQ(contentOf(folder / "outside/file"), "kept");
}

TEST_F(MoveTest, RemovalRefusesTheNamesOfFoldersThatHaveOthers)
{
    makeTree();
    EXPECT_FALSE(transfer.removeItem(folder / "tree/."));
    EXPECT_FALSE(transfer.removeItem(folder / "tree/inner/.."));
    EXPECT_TRUE(isWholeTree(folder / "tree"));
}

TEST_F(MoveTest, ZeroByteInANameIsAnError)
{
    auto const item = folder.file("item", "item");
    auto const odd = folder / std::string_view("new\0name", 8);
    EXPECT_FALSE(transfer.moveItem(item, odd));
    EXPECT_FALSE(transfer.copyItem(item, odd));
    EXPECT_FALSE(transfer.copyItem(odd, folder / "copy"));
    EXPECT_FALSE(transfer.createAlias(odd, item));
    EXPECT_FALSE(transfer.createAlias(folder / "alias", odd));
    EXPECT_FALSE(transfer.removeItem(folder / std::string_view("item\0", 5)));
    EXPECT_EQ(namesIn(folder.url()), Names { "item" });
}

TEST_F(MoveTest, AliasLeadsToItsItem)
{
    auto const item = folder.file("item", "there");
    EXPECT_EQ(messageOf(transfer.createAlias(folder / "alias", item)), "done");
    EXPECT_EQ(contentOf(folder / "alias"), "there");
    auto const dangling = folder.link("dangling", "nowhere");
    EXPECT_EQ(messageOf(transfer.createAlias(folder / "another", dangling)), "done");
    EXPECT_TRUE(isThere(folder / "another"));
}

TEST_F(MoveTest, AliasOfAnItemThatIsNotThereIsAnError)
{
    auto const outcome = transfer.createAlias(folder / "alias", folder / "gone");
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error().kind, ErrorKind::notFound);
    EXPECT_EQ(outcome.error().message, "Could not make an alias of \u201Cgone\u201D: No such file or directory.");
    EXPECT_FALSE(isThere(folder / "alias"));
}

TEST_F(MoveTest, ExactBytesOfEveryNameArrive)
{
    std::string const longName(255, 'l');
    for (auto const& name : { std::string("with space"), std::string("quo'te\"d"), std::string("new\nline"),
             std::string("100%s%n"), std::string("-rf"), std::string("broken\xff\xc3"), longName,
             std::string("back\\slash"), std::string("\u00e9\u0301") }) {
        auto const item = folder.file(name, name);
        folder.folder("into");
        EXPECT_EQ(messageOf(transfer.copyItem(item, folder / ("into/" + name))), "done");
        EXPECT_EQ(messageOf(transfer.removeItem(folder / ("into/" + name))), "done");
        EXPECT_EQ(messageOf(transfer.createAlias(folder / ("into/" + name), item)), "done");
        EXPECT_EQ(contentOf(folder / ("into/" + name)), name);
        EXPECT_EQ(messageOf(transfer.removeItem(folder / ("into/" + name))), "done");
        EXPECT_EQ(messageOf(transfer.moveItem(item, folder / ("into/" + name))), "done");
        EXPECT_EQ(messageOf(transfer.moveItem(folder / "into", elsewhere / name)), "done");
        EXPECT_EQ(namesIn(elsewhere / name), Names { name });
        EXPECT_EQ(contentOf((elsewhere / name).appendingPathComponent(name)), name);
        EXPECT_EQ(messageOf(transfer.removeItem(elsewhere / name)), "done");
    }
}

TEST_F(MoveTest, NameThatIsTooLongIsAnError)
{
    auto const item = folder.file("item", "item");
    auto const outcome = transfer.copyItem(item, folder / std::string(256, 'l'));
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error().kind, ErrorKind::other);
    EXPECT_EQ(namesIn(folder.url()), Names { "item" });
}

}
