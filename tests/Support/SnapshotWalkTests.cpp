#include "Fakes/DiskTest.h"
#include "Fakes/NoDefaultMemory.h"
#include "Support/SnapshotWalk.h"

#include <memory>
#include <memory_resource>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Names = std::vector<std::string>;

Names namesOf(SnapshotNodes const& nodes)
{
    Names names;
    for (auto const& node : nodes)
        names.emplace_back(node.name);
    return names;
}

int countOf(SnapshotNodes const& nodes)
{
    int count = 0;
    for (auto const& node : nodes)
        count += 1 + countOf(node.children);
    return count;
}

ResourceValues values(std::optional<bool> isDirectory, std::optional<bool> isPackage)
{
    ResourceValues values;
    values.isDirectory = isDirectory;
    values.isPackage = isPackage;
    return values;
}

/// A directory of which the reading breaks off after the first name, and one beside it.
class BreakingOff final : public FakeFileManager {
public:
    BreakingOff()
        : FakeFileManager(nullptr)
    {
    }
    std::unique_ptr<WalkedDirectory> walk(FileURL const&) const override
    {
        return std::make_unique<Directory>(Names { "broken", "whole" });
    }

private:
    class Directory final : public WalkedDirectory {
    public:
        explicit Directory(Names names)
            : names_(std::move(names))
        {
        }
        Result<void> addNamesOfFolders(NameList& names) const override
        {
            for (auto const& name : names_) {
                if (name == "end")
                    return Error { ErrorKind::other, "The reading broke off." };
                names.add(name);
            }
            return {};
        }
        std::unique_ptr<WalkedDirectory> folder(std::string_view name) const override
        {
            if (name == "broken")
                return std::make_unique<Directory>(Names { "read", "end" });
            return std::make_unique<Directory>(name == "whole" ? Names { "a", "b" } : Names {});
        }

    private:
        Names names_;
    };
};

class SnapshotWalkTest : public DiskTest {
protected:
    SnapshotWalk walk() const { return { *platform().fileManager, *platform().collation }; }
    SnapshotNodes roots(std::vector<TopLevelFolder> const& folders) const { return walk().roots(folders); }
    /// What is found below the test's own folder.
    SnapshotNodes found() const { return roots({ { "root", folder.url() } }).front().children; }

    /// A listing of `count` folders named by their numbers, from 1 on.
    void folders(std::string const& in, int count)
    {
        Names names;
        for (int number = 1; number <= count; ++number)
            names.push_back(std::to_string(number));
        list(folder / in, names);
    }
    /// `count` folders that each hold `each` folders.
    TopLevelFolder tree(std::string const& name, int count, int each)
    {
        folders(name, count);
        for (int number = 1; number <= count; ++number)
            folders(name + "/" + std::to_string(number), each);
        return { name, folder / name };
    }
    /// A listing that tells of folders with these names, in this order.
    void list(FileURL const& in, Names const& names)
    {
        auto& listing = desktop.fileManager.listings[in];
        for (auto const& name : names)
            listing.push_back({ in.appendingPathComponent(name), values(true, false) });
    }
};

TEST_F(SnapshotWalkTest, ANodeHasTheNameThePathAndTheFoldersOfItsFolder)
{
    folder.folder("A/b/c");
    folder.folder("A/d");
    auto const base = folder.url().path();
    EXPECT_EQ(roots({ { "Title", folder / "A" } }),
        (SnapshotNodes { { "Title", base + "/A",
            { { "b", base + "/A/b", { { "c", base + "/A/b/c", {} } } }, { "d", base + "/A/d", {} } } } }));
}

TEST_F(SnapshotWalkTest, WhatIsFoundLiesInTheMemoryThatIsGiven)
{
    folder.folder("A/" + std::string(100, 'b') + "/c");
    std::pmr::monotonic_buffer_resource memory(std::pmr::new_delete_resource());
    SnapshotWalk const walk(*platform().fileManager, *platform().collation, &memory);
    auto const inDefaultMemory = roots({ { "A", folder / "A" }, { "A", folder / "A" } });
    NoDefaultMemory const nowhereElse;
    EXPECT_EQ(walk.roots({ { "A", folder / "A" }, { "A", folder / "A" } }), inDefaultMemory);
    int budget = SnapshotWalk::mostNodes;
    EXPECT_EQ(walk.subfolders(folder / "A", 1, budget), inDefaultMemory.front().children);
}

TEST_F(SnapshotWalkTest, AFolderIsNamedRightAfterManyBelowTheOneBefore)
{
    std::string const base = (folder / "A").path();
    Names names;
    for (char letter = 'a'; letter <= 'e'; ++letter)
        names.push_back(std::string(200, letter));
    for (auto const& first : names) {
        for (auto const& second : names) {
            for (auto const& third : names)
                folder.folder("A/" + first + "/" + second + "/" + third);
        }
    }
    auto const check = [&](auto const& self, SnapshotNodes const& nodes, std::string const& path, int depth) -> void {
        ASSERT_EQ(namesOf(nodes), depth > SnapshotWalk::deepest ? Names {} : names);
        for (auto const& node : nodes) {
            EXPECT_EQ(std::string(node.path), path + "/" + std::string(node.name));
            self(self, node.children, std::string(node.path), depth + 1);
        }
    };
    check(check, roots({ { "A", folder / "A" } }).front().children, base, 1);
}

TEST_F(SnapshotWalkTest, RootsKeepTheirOrderAndTheirDuplicates)
{
    folder.folder("B/in");
    folder.folder("A");
    EXPECT_EQ(namesOf(roots({ { "B", folder / "B" }, { "A", folder / "A" }, { "B", folder / "B" } })),
        (Names { "B", "A", "B" }));
    EXPECT_TRUE(roots({}).empty());
}

TEST_F(SnapshotWalkTest, ARootThatIsNotToldFromTheTopIsLeftOut)
{
    EXPECT_EQ(namesOf(roots({ { "relative", FileURL("A") }, { "empty", FileURL("") }, { "A", folder.folder("A") } })),
        Names { "A" });
}

TEST_F(SnapshotWalkTest, APathHasNoTrailingSlash)
{
    folder.folder("A/b");
    auto const nodes = roots({ { "A", FileURL((folder / "A").path() + "/", true) } });
    EXPECT_EQ(std::string_view(nodes.front().path), (folder / "A").path());
    EXPECT_EQ(std::string_view(nodes.front().children.front().path), (folder / "A/b").path());
}

TEST_F(SnapshotWalkTest, TheLevelBelowTheThirdIsNotListed)
{
    folder.folder("1/2/3/4/5");
    auto const first = found();
    auto const& third = first.front().children.front().children.front();
    EXPECT_EQ(third.name, "3");
    EXPECT_TRUE(third.children.empty());
    EXPECT_EQ(desktop.fileManager.listed, (std::vector { folder.url(), folder / "1", folder / "1/2" }));
}

TEST_F(SnapshotWalkTest, FilesAndHiddenFoldersAndPackagesAndLinksAreLeftOut)
{
    folder.folder("shown/inner");
    folder.folder(".cache/inner");
    folder.folder("hidden/inner");
    folder.file(".hidden", "hidden\n");
    for (auto const* const package : { "a.app", "b.bundle", "c.framework", "d.plugin", "e.prefPane", "f.rtfd" })
        folder.folder(std::string(package) + "/inner");
    folder.file("file");
    folder.fifo("fifo");
    folder.link("link to folder", "shown");
    folder.link("link to nothing", "nowhere");
    EXPECT_EQ(namesOf(found()), (Names { "shown" }));
    EXPECT_EQ(desktop.fileManager.hiddenAskedFor.front(), HiddenItems::skipped);
}

TEST_F(SnapshotWalkTest, AnEntryOfWhichNothingIsKnownIsLeftOutAndAnUnknownPackageIsAFolder)
{
    auto const root = folder / "root";
    desktop.fileManager.listings[root] = {
        { root.appendingPathComponent("unknown"), {} },
        { root.appendingPathComponent("file"), values(false, {}) },
        { root.appendingPathComponent("folder"), values(true, {}) },
        { root.appendingPathComponent("package"), values(true, true) },
    };
    int budget = 1;
    EXPECT_EQ(namesOf(walk().subfolders(root, SnapshotWalk::deepest, budget)), (Names { "folder" }));
}

TEST_F(SnapshotWalkTest, FoldersStandInTheUsersOrder)
{
    for (auto const* const name : { "b", "A", "file 10", "file 9", "C" })
        folder.folder(name);
    EXPECT_EQ(namesOf(found()), (Names { "A", "b", "C", "file 9", "file 10" }));
}

TEST_F(SnapshotWalkTest, EqualNamesKeepTheOrderOfTheListing)
{
    Names names;
    for (int number = 0; number < 100; ++number)
        names.push_back(number % 2 == 0 ? "z" + std::string(static_cast<std::size_t>(number / 2), '0') + "1" : "a1");
    // All of "z", any zeros and 1 are equal, as are all of "a1".
    auto const root = folder / "root";
    list(root, names);
    int budget = SnapshotWalk::mostNodes;
    Names expected(50, "a1");
    for (std::size_t zeros = 0; zeros < 50; ++zeros)
        expected.push_back("z" + std::string(zeros, '0') + "1");
    EXPECT_EQ(namesOf(walk().subfolders(root, SnapshotWalk::deepest, budget)), expected);
}

TEST_F(SnapshotWalkTest, OfTwoHundredFoldersTheFirst150InOrderAreListed)
{
    folders("A", 200);
    folder.folder("A/150/inner");
    folder.folder("A/151/inner");
    auto const children = roots({ { "A", folder / "A" } }).front().children;
    ASSERT_EQ(children.size(), 150u);
    for (std::size_t index = 0; index < children.size(); ++index)
        EXPECT_EQ(std::string_view(children[index].name), std::to_string(index + 1));
    EXPECT_EQ(namesOf(children.back().children), (Names { "inner" }));
}

TEST_F(SnapshotWalkTest, TheLimitOfOneFolderHoldsBelowARootToo)
{
    folder.folder("A/b");
    folders("A/b", 151);
    EXPECT_EQ(roots({ { "A", folder / "A" } }).front().children.front().children.size(), 150u);
}

TEST_F(SnapshotWalkTest, WhatIsLeftOutOfAFolderCostsNothing)
{
    // 150 of 200 are taken from the first, so that 1850 are left.
    folders("A", 200);
    auto const nodes = roots({ { "A", folder / "A" }, tree("B", 37, 49), tree("C", 1, 0) });
    EXPECT_EQ(countOf(nodes[1].children), 1850);
    EXPECT_EQ(countOf(nodes[2].children), 0);
}

TEST_F(SnapshotWalkTest, ARootThatNeedsMoreThanIsLeftIsListedAsFarAsItGoes)
{
    // 1500 in the first; of 1000 in the second the first 500 on the way down.
    auto const nodes
        = roots({ tree("A", 50, 29), tree("B", 40, 24), { "C", folder.folder("C/c").deletingLastPathComponent() } });
    ASSERT_EQ(nodes.size(), 3u);
    EXPECT_EQ(countOf(nodes[0].children), 1500);
    EXPECT_EQ(countOf(nodes[1].children), 500);
    ASSERT_EQ(nodes[1].children.size(), 20u);
    for (auto const& child : nodes[1].children)
        EXPECT_EQ(child.children.size(), 24u) << child.name;
    EXPECT_EQ(nodes[2], (SnapshotNode { "C", (folder / "C").path(), {} }));
}

TEST_F(SnapshotWalkTest, TheAllowanceMayEndInTheMiddleOfAFolder)
{
    tree("A", 3, 3);
    int budget = 6;
    auto const nodes = walk().subfolders(folder / "A", 1, budget);
    EXPECT_EQ(budget, 0);
    EXPECT_EQ(namesOf(nodes), (Names { "1", "2" }));
    EXPECT_EQ(namesOf(nodes[0].children), (Names { "1", "2", "3" }));
    EXPECT_EQ(namesOf(nodes[1].children), (Names { "1" }));
}

TEST_F(SnapshotWalkTest, AFolderWithoutAllowanceOrBelowTheDepthIsNotRead)
{
    folder.folder("A/b");
    for (auto const& [depth, allowance] : { std::pair { 4, 2000 }, { 1, 0 }, { 1, -1 }, { 100, 1 } }) {
        int budget = allowance;
        EXPECT_TRUE(walk().subfolders(folder / "A", depth, budget).empty());
        EXPECT_EQ(budget, allowance);
    }
    EXPECT_TRUE(desktop.fileManager.listed.empty());
    int budget = 1;
    EXPECT_EQ(namesOf(walk().subfolders(folder / "A", 3, budget)), (Names { "b" }));
}

TEST_F(SnapshotWalkTest, AnExhaustedAllowanceStopsTheReading)
{
    auto const nodes = roots({ tree("A", 100, 19), tree("B", 5, 5) });
    EXPECT_EQ(countOf(nodes[0].children), 2000);
    EXPECT_EQ(std::count(desktop.fileManager.listed.begin(), desktop.fileManager.listed.end(), folder / "B"), 0);
}

TEST_F(SnapshotWalkTest, AFolderThatCannotBeReadHasNoChildren)
{
    folder.folder("A/in");
    folder.folder("B/in");
    desktop.fileManager.unreadable = { folder / "A" };
    auto const nodes = found();
    EXPECT_EQ(namesOf(nodes), (Names { "A", "B" }));
    EXPECT_TRUE(nodes[0].children.empty());
    EXPECT_EQ(namesOf(nodes[1].children), (Names { "in" }));
    EXPECT_EQ(roots({ { "gone", folder / "gone" } }), (SnapshotNodes { { "gone", (folder / "gone").path(), {} } }));
}

TEST_F(SnapshotWalkTest, AFolderOfWhichTheReadingBreaksOffHasNoChildrenAndCostsNothing)
{
    BreakingOff const files;
    int budget = 10;
    auto const nodes = SnapshotWalk(files, *platform().collation).subfolders(FileURL("/A"), 1, budget);
    EXPECT_EQ(nodes,
        (SnapshotNodes {
            { "broken", "/A/broken" }, { "whole", "/A/whole", { { "a", "/A/whole/a" }, { "b", "/A/whole/b" } } } }));
    EXPECT_EQ(budget, 6);
}

TEST_F(SnapshotWalkTest, AFolderWhoseNameIsNotUTF8IsLeftOutWithWhatIsBelow)
{
    folder.folder("a\xff/in");
    folder.folder("b/c\xc3/in");
    folder.folder("b/d");
    folder.folder("é");
    auto const nodes = found();
    EXPECT_EQ(namesOf(nodes), (Names { "b", "é" }));
    EXPECT_EQ(namesOf(nodes[0].children), (Names { "d" }));
}

TEST_F(SnapshotWalkTest, AFolderWhoseNameIsNotUTF8CostsNothing)
{
    folder.folder("A/a\xff");
    folder.folder("A/b");
    int budget = 1;
    EXPECT_EQ(namesOf(walk().subfolders(folder / "A", 1, budget)), (Names { "b" }));

    Names unnamable;
    for (int number = 1; number <= 150; ++number)
        unnamable.push_back("\xff" + std::to_string(number));
    list(folder / "B", unnamable);
    folders("B", 150);
    EXPECT_EQ(roots({ { "B", folder / "B" } }).front().children.size(), 150u);
}

TEST_F(SnapshotWalkTest, ARootThatCannotBeNamedIsLeftOut)
{
    folder.folder("a\xff/in");
    folder.folder("b/in");
    EXPECT_EQ(namesOf(roots({ { "a", folder / "a\xff" }, { "b\xff", folder / "b" }, { "b", folder / "b" } })),
        (Names { "b" }));
    EXPECT_EQ(std::count(desktop.fileManager.listed.begin(), desktop.fileManager.listed.end(), folder / "a\xff"), 0);
}

}
}
