#include "Actions/MenuActionHandler.h"
#include "Fakes/DiskTest.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Names = std::vector<std::string>;

/// Three files in one folder, and the folder "Docs" that they go into.
class MoveCopyAliasTest : public DiskTest {
protected:
    void present() { MenuActionHandler::presentMoveCopyAliasDialog(items, docs); }
    std::string source(std::string const& name) const { return folder.url().path() + "/source/" + name; }
    std::string target(std::string const& name) const { return docs.path() + "/" + name; }

    FileURL const sourceFolder = folder.folder("source");
    FileURL const docs = folder.folder("Docs");
    std::vector<FileURL> items { folder.file("source/b.txt", "b"), folder.file("source/c.txt", "c"),
        folder.file("source/a.txt", "a") };
};

TEST_F(MoveCopyAliasTest, AsksWithTheNamesInTheGivenOrder)
{
    desktop.alerts.answers = { 3 };
    present();
    ASSERT_EQ(desktop.alerts.asked.size(), 1u);
    auto const& question = desktop.alerts.asked[0];
    EXPECT_EQ(question.style, Alert().style);
    EXPECT_EQ(question.messageText, "Move, copy, or alias?");
    EXPECT_EQ(question.informativeText,
        "Put b.txt, c.txt, a.txt into \xE2\x80\x9C"
        "Docs\xE2\x80\x9D.");
    EXPECT_EQ(question.buttons, (Names { "Move", "Copy", "Alias", "Cancel" }));
}

TEST_F(MoveCopyAliasTest, OneItemIsNamedWithoutAComma)
{
    desktop.alerts.answers = { 3 };
    MenuActionHandler::presentMoveCopyAliasDialog({ FileURL("/s/100% \xFF,", true) }, docs);
    EXPECT_EQ(desktop.alerts.asked[0].informativeText, "Put 100% \xFF, into “Docs”.");
}

TEST_F(MoveCopyAliasTest, TheFirstAnswerMovesEachItemInTheGivenOrder)
{
    desktop.alerts.answers = { 0 };
    present();
    EXPECT_EQ(desktop.calls,
        (CallRecord { "ask Move, copy, or alias?", "move " + source("b.txt") + " to " + target("b.txt"),
            "move " + source("c.txt") + " to " + target("c.txt"),
            "move " + source("a.txt") + " to " + target("a.txt") }));
    EXPECT_EQ(folder.names("Docs"), (Names { "a.txt", "b.txt", "c.txt" }));
    EXPECT_TRUE(folder.names("source").empty());
}

TEST_F(MoveCopyAliasTest, TheSecondAnswerCopiesEachItemInTheGivenOrder)
{
    desktop.alerts.answers = { 1 };
    present();
    EXPECT_EQ(desktop.calls,
        (CallRecord { "ask Move, copy, or alias?", "copy " + source("b.txt") + " to " + target("b.txt"),
            "copy " + source("c.txt") + " to " + target("c.txt"),
            "copy " + source("a.txt") + " to " + target("a.txt") }));
    EXPECT_EQ(folder.names("Docs"), (Names { "a.txt", "b.txt", "c.txt" }));
    EXPECT_EQ(folder.names("source"), (Names { "a.txt", "b.txt", "c.txt" }));
}

TEST_F(MoveCopyAliasTest, TheThirdAnswerMakesAnAliasOfEachItemInTheGivenOrder)
{
    desktop.alerts.answers = { 2 };
    present();
    EXPECT_EQ(desktop.calls,
        (CallRecord { "ask Move, copy, or alias?", "alias " + source("b.txt") + " at " + target("b alias.txt"),
            "alias " + source("c.txt") + " at " + target("c alias.txt"),
            "alias " + source("a.txt") + " at " + target("a alias.txt") }));
    EXPECT_EQ(folder.content("Docs/c alias.txt"), "c");
}

TEST_F(MoveCopyAliasTest, AnyOtherAnswerDoesNothing)
{
    for (auto const answer : { std::size_t(3), std::size_t(4), std::size_t(1003), SIZE_MAX }) {
        desktop.calls.clear();
        desktop.alerts.answers = { answer };
        present();
        EXPECT_EQ(desktop.calls, (CallRecord { "ask Move, copy, or alias?" }));
    }
    EXPECT_TRUE(folder.names("Docs").empty());
}

TEST_F(MoveCopyAliasTest, AnEmptyListStillAsksAndThenDoesNothing)
{
    items.clear();
    for (std::size_t answer = 0; answer < 4; ++answer) {
        desktop.calls.clear();
        desktop.alerts.answers = { answer };
        present();
        EXPECT_EQ(desktop.alerts.asked.back().informativeText, "Put  into “Docs”.");
        EXPECT_EQ(desktop.calls, (CallRecord { "ask Move, copy, or alias?" }));
    }
}

TEST_F(MoveCopyAliasTest, EachItemIsDoneWithItsOwnQuestionAndErrorBeforeTheNext)
{
    folder.file("Docs/b.txt", "old");
    folder.file("Docs/a.txt", "old");
    folder.remove("source/c.txt");
    std::string error;
    desktop.alerts.whileUp = [&] {
        if (!desktop.alerts.errors.empty())
            error = desktop.alerts.errors.front().message;
    };
    desktop.alerts.answers = { 1, 0, 0, 0 };
    present();
    EXPECT_EQ(desktop.calls,
        (CallRecord { "ask Move, copy, or alias?", "ask “b.txt” already exists in “Docs”.", "remove " + target("b.txt"),
            "copy " + source("b.txt") + " to " + target("b.txt"), "copy " + source("c.txt") + " to " + target("c.txt"),
            "show error " + error, "ask “a.txt” already exists in “Docs”.", "remove " + target("a.txt"),
            "copy " + source("a.txt") + " to " + target("a.txt") }));
    EXPECT_EQ(folder.names("Docs"), (Names { "a.txt", "b.txt" }));
    EXPECT_EQ(folder.content("Docs/a.txt"), "a");
}

TEST_F(MoveCopyAliasTest, ACancelledReplacementDoesNotStopTheOthers)
{
    folder.file("Docs/c.txt", "old");
    desktop.alerts.answers = { 0, 1 };
    present();
    EXPECT_EQ(folder.names("Docs"), (Names { "a.txt", "b.txt", "c.txt" }));
    EXPECT_EQ(folder.content("Docs/c.txt"), "old");
    EXPECT_EQ(folder.names("source"), (Names { "c.txt" }));
}

TEST_F(MoveCopyAliasTest, TwoItemsOfOneNameAskAboutEachOther)
{
    folder.folder("other");
    items = { folder / "source/a.txt", folder.file("other/a.txt", "other") };
    desktop.alerts.answers = { 1, 0 };
    present();
    EXPECT_EQ(desktop.alerts.asked.back().messageText, "“a.txt” already exists in “Docs”.");
    EXPECT_EQ(folder.content("Docs/a.txt"), "other");
}

TEST_F(MoveCopyAliasTest, AFolderIntoItselfIsAnErrorAndStaysWhole)
{
    folder.file("Docs/inside", "inside");
    items = { docs };
    for (std::size_t answer = 0; answer < 2; ++answer) {
        desktop.alerts.answers = { answer, 0 };
        present();
        ASSERT_EQ(desktop.alerts.errors.size(), answer + 1);
        EXPECT_EQ(desktop.alerts.errors.back().kind, ErrorKind::intoItself);
    }
    EXPECT_EQ(folder.names("Docs"), (Names { "inside" }));
}

}
}
