#include "Support/FreeNameTest.h"

#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

struct NameRow {
    std::string item;
    std::string suffix;
    Names taken;
    std::string expected;
};

TEST_F(FreeNameTest, TheFirstFreeNameIsTaken)
{
    std::string const longName(251, 'l');
    std::vector<NameRow> const rows {
        { "Report.pdf", "", {}, "Report.pdf" },
        { "Report.pdf", "", { "Report.pdf" }, "Report 2.pdf" },
        { "Report.pdf", "", { "Report.pdf", "Report 2.pdf" }, "Report 3.pdf" },
        { "Report.pdf", "", { "Report.pdf", "Report 3.pdf" }, "Report 2.pdf" },
        { "Report.pdf", "", { "Report 2.pdf" }, "Report.pdf" },
        { "Report.pdf", "", { "report.pdf", "Report", "Report.pdf " }, "Report.pdf" },
        { "Report.pdf", " alias", {}, "Report alias.pdf" },
        { "Report.pdf", " alias", { "Report.pdf" }, "Report alias.pdf" },
        { "Report.pdf", " alias", { "Report alias.pdf" }, "Report alias 2.pdf" },
        { "Report.pdf", " alias", { "Report alias.pdf", "Report alias 2.pdf" }, "Report alias 3.pdf" },
        { "a.txt", "", { "a 2.txt" }, "a.txt" },
        { "a.txt", " alias", { "a alias.txt" }, "a alias 2.txt" },
        { "Archive.old", "", { "Archive.old" }, "Archive 2.old" },
        { "README", "", { "README", "README 2" }, "README 3" },
        { "README", " alias", {}, "README alias" },
        { "README", " alias", { "README alias" }, "README alias 2" },
        { ".hidden", "", { ".hidden" }, ".hidden 2" },
        { ".hidden", " alias", {}, ".hidden alias" },
        { ".hidden.txt", "", { ".hidden.txt" }, ".hidden 2.txt" },
        { "a.b.c", "", { "a.b.c" }, "a.b 2.c" },
        { "a.b.c", " alias", {}, "a.b alias.c" },
        { "ends.", "", { "ends." }, "ends. 2" },
        { "ends.", " alias", {}, "ends. alias" },
        { "a 2.txt", "", { "a 2.txt" }, "a 2 2.txt" },
        { "...", "", { "..." }, "... 2" },
        { "a. b", "", { "a. b" }, "a 2. b" },
        { "\xFF.\xC3", "", { "\xFF.\xC3" }, "\xFF 2.\xC3" },
        { longName + ".txt", "", {}, longName + ".txt" },
    };
    for (auto const& row : rows) {
        folder.remove("into");
        folder.folder("into");
        take(row.taken);
        auto const url = item(row.item);
        if (row.suffix.empty()) {
            EXPECT_EQ(nameGiven(FinderBridge::copyItem, url), row.expected) << row.item;
            folder.remove("into/" + row.expected);
            EXPECT_EQ(nameGiven(FinderBridge::moveItem, url), row.expected) << row.item;
        } else {
            EXPECT_EQ(nameGiven(FinderBridge::aliasItem, url), row.expected) << row.item;
        }
        for (auto const& name : row.taken)
            EXPECT_EQ(folder.content("into/" + name), "taken");
    }
    EXPECT_TRUE(desktop.alerts.asked.empty());
}

TEST_F(FreeNameTest, AFolderIsNamedByTheSameRuleAndGoesWithItsContents)
{
    folder.folder("source/Photos/inner");
    folder.folder("source/Archive.old");
    folder.file("source/Photos/inner/file", "inside");
    take({ "Archive.old" });
    folder.folder("into/Photos");
    EXPECT_EQ(nameGiven(FinderBridge::copyItem, FileURL((source.path() + "/Photos/"))), "Photos 2");
    EXPECT_EQ(nameGiven(FinderBridge::moveItem, source.appendingPathComponent("Photos", true)), "Photos 3");
    EXPECT_EQ(folder.content("into/Photos 2/inner/file"), "inside");
    EXPECT_EQ(folder.content("into/Photos 3/inner/file"), "inside");
    EXPECT_EQ(nameGiven(FinderBridge::moveItem, folder / "source/Archive.old"), "Archive 2.old");
}

TEST_F(FreeNameTest, EverythingThatStandsAtANameTakesIt)
{
    folder.folder("into/a.txt");
    folder.link("into/a 2.txt", "nowhere");
    folder.link("into/a 3.txt", "a 3.txt");
    folder.fifo("into/a 4.txt");
    folder.link("into/a 5.txt", into.path());
    EXPECT_EQ(nameGiven(FinderBridge::copyItem, item("a.txt")), "a 6.txt");
}

TEST_F(FreeNameTest, ANameTakenInTheGapSendsTheItemToTheNextOne)
{
    std::map<std::string, Result<void> (*)(FileURL const&, FileURL const&)> const operations {
        { "", FinderBridge::copyItem }, { " alias", FinderBridge::aliasItem }
    };
    for (auto const& [suffix, put] : operations) {
        folder.remove("into");
        folder.folder("into");
        takeInTheGap(2);
        EXPECT_EQ(nameGiven(put, item("a.txt")), "a" + suffix + " 3.txt");
        EXPECT_EQ(folder.content("into/a" + suffix + ".txt"), "another program's");
        EXPECT_EQ(folder.content("into/a" + suffix + " 2.txt"), "another program's");
        EXPECT_EQ(folder.content("into/a" + suffix + " 3.txt"), "item");
    }
    folder.remove("into");
    folder.folder("into");
    takeInTheGap(1);
    EXPECT_EQ(nameGiven(FinderBridge::moveItem, item("a.txt")), "a 2.txt");
    EXPECT_EQ(folder.content("into/a.txt"), "another program's");
    EXPECT_TRUE(folder.names("source").empty());
}

TEST_F(FreeNameTest, ANameTakenInTheGapIsNotTriedAgain)
{
    int calls = 0;
    desktop.fileTransfer.instead = [&](std::string const&) -> std::optional<Result<void>> {
        if (++calls == 1)
            return Result<void>(Error { ErrorKind::alreadyExists, "taken" });
        return std::nullopt;
    };
    EXPECT_EQ(nameGiven(FinderBridge::copyItem, item("a.txt")), "a 2.txt");
    EXPECT_EQ(calls, 2);
}

TEST_F(FreeNameTest, AnyOtherErrorEndsTheSearchAndIsPassedOn)
{
    for (auto const kind : { ErrorKind::notFound, ErrorKind::noPermission, ErrorKind::notRegularFile,
             ErrorKind::tooLarge, ErrorKind::intoItself, ErrorKind::other }) {
        for (auto* const put : { FinderBridge::moveItem, FinderBridge::copyItem, FinderBridge::aliasItem }) {
            desktop.calls.clear();
            desktop.fileTransfer.instead = [&](std::string const&) {
                return std::optional(Result<void>(Error { kind, "The file system's words." }));
            };
            auto const outcome = put(item("a.txt"), into);
            ASSERT_FALSE(outcome);
            EXPECT_EQ(outcome.error().kind, kind);
            EXPECT_EQ(outcome.error().message, "The file system's words.");
            EXPECT_EQ(desktop.calls.size(), 1u);
        }
    }
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(FreeNameTest, AFolderThatIsNotThereIsTheFileSystemsError)
{
    auto const url = item("a.txt");
    for (auto* const put : { FinderBridge::moveItem, FinderBridge::copyItem, FinderBridge::aliasItem }) {
        auto const outcome = put(url, folder / "gone");
        ASSERT_FALSE(outcome);
        EXPECT_EQ(outcome.error().kind, ErrorKind::notFound);
    }
    EXPECT_EQ(folder.content("source/a.txt"), "item");
}

TEST_F(FreeNameTest, AnItemThatIsNotThereIsTheFileSystemsError)
{
    for (auto* const put : { FinderBridge::moveItem, FinderBridge::copyItem, FinderBridge::aliasItem }) {
        auto const outcome = put(folder / "source/gone", into);
        ASSERT_FALSE(outcome);
        EXPECT_EQ(outcome.error().kind, ErrorKind::notFound);
    }
    EXPECT_TRUE(folder.names("into").empty());
}

TEST_F(FreeNameTest, AnItemInItsOwnFolderGetsTheNextName)
{
    auto const url = item("a.txt");
    EXPECT_TRUE(FinderBridge::copyItem(url, source));
    EXPECT_TRUE(FinderBridge::aliasItem(url, source));
    EXPECT_EQ(folder.names("source"), (Names { "a 2.txt", "a alias.txt", "a.txt" }));
    EXPECT_TRUE(FinderBridge::moveItem(url, source));
    EXPECT_EQ(folder.names("source"), (Names { "a 2.txt", "a 3.txt", "a alias.txt" }));
}

TEST_F(FreeNameTest, TheExactBytesOfHostileNamesArrive)
{
    for (auto const& name : { std::string("with  spaces "), std::string("quo'te\"d`$(x)`"), std::string("new\nline\t"),
             std::string("100%s%n%41"), std::string("-rf"), std::string("--"), std::string("br\xFFoken\xC3("),
             std::string("back\\slash"), std::string("e\xCC\x81"), std::string("~"), std::string("*?[a]"),
             std::string("“curly”"), std::string("\x7F\x01") }) {
        auto const url = item(name);
        EXPECT_EQ(nameGiven(FinderBridge::copyItem, url), name);
        EXPECT_EQ(folder.content("into/" + name), "item");
        EXPECT_EQ(nameGiven(FinderBridge::copyItem, url), name + " 2");
        EXPECT_EQ(nameGiven(FinderBridge::aliasItem, url), name + " alias");
        EXPECT_EQ(folder.linkTarget("into/" + name + " alias"), url.path());
        EXPECT_EQ(nameGiven(FinderBridge::moveItem, url), name + " 3");
        EXPECT_EQ(folder.content("into/" + name + " 3"), "item");
        EXPECT_TRUE(folder.names("source").empty());
        folder.remove("into");
        folder.folder("into");
    }
}

TEST_F(FreeNameTest, ANameOf255BytesArrivesAndHasNoRoomForANumber)
{
    std::string const name(255, '\xE9');
    auto const url = item(name);
    EXPECT_EQ(nameGiven(FinderBridge::copyItem, url), name);
    for (auto* const put : { FinderBridge::moveItem, FinderBridge::copyItem, FinderBridge::aliasItem }) {
        auto const outcome = put(url, into);
        ASSERT_FALSE(outcome);
        EXPECT_EQ(outcome.error().kind, ErrorKind::other);
        EXPECT_NE(outcome.error().message.find("File name too long"), std::string::npos) << outcome.error().message;
    }
    EXPECT_EQ(folder.names("into"), (Names { name }));
    EXPECT_EQ(folder.content("source/" + name), "item");
    folder.remove("into/" + name);
    EXPECT_EQ(nameGiven(FinderBridge::moveItem, url), name);
}

TEST_F(FreeNameTest, ANameOf255BytesWithAnExtensionArrives)
{
    auto const name = std::string(251, 'l') + ".txt";
    auto const url = item(name);
    EXPECT_EQ(nameGiven(FinderBridge::moveItem, url), name);
    EXPECT_EQ(folder.content("into/" + name), "item");
}

}
}
