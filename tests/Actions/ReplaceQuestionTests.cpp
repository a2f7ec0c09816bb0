#include "Actions/MenuActionHandler.h"
#include "Fakes/DiskTest.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

constexpr std::size_t replace = 0;
constexpr std::size_t cancel = 1;
constexpr std::size_t dismiss = 0;

constexpr TransferMode allModes[] { TransferMode::move, TransferMode::copy, TransferMode::alias };

/// An item of content "new" in one folder, and the folder "Docs" that it goes into.
class ReplaceQuestionTest : public DiskTest {
protected:
    void transfer(TransferMode mode) { MenuActionHandler::performCopy(item, docs, mode); }
    std::string nameInDocs(std::string const& name) const { return docs.path() + "/" + name; }

    FileURL const source = folder.folder("source");
    FileURL const item = folder.file("source/a.txt", "new");
    FileURL const docs = folder.folder("Docs");
};

TEST_F(ReplaceQuestionTest, TheModesHaveTheirStoredValues)
{
    EXPECT_EQ(static_cast<int>(TransferMode::move), 0);
    EXPECT_EQ(static_cast<int>(TransferMode::copy), 1);
    EXPECT_EQ(static_cast<int>(TransferMode::alias), 2);
    static_assert(sizeof(TransferMode) == 1);
}

TEST_F(ReplaceQuestionTest, WithoutANamesakeNothingIsAsked)
{
    folder.file("Docs/a 2.txt", "other");
    transfer(TransferMode::copy);
    EXPECT_EQ(folder.names("Docs"), (std::vector<std::string> { "a 2.txt", "a.txt" }));
    EXPECT_EQ(folder.content("Docs/a.txt"), "new");
    EXPECT_EQ(folder.content("source/a.txt"), "new");
    EXPECT_EQ(desktop.calls, (CallRecord { "copy " + item.path() + " to " + nameInDocs("a.txt") }));
}

TEST_F(ReplaceQuestionTest, EachModeIsItsOwnTransfer)
{
    transfer(TransferMode::copy);
    EXPECT_EQ(folder.content("source/a.txt"), "new");
    EXPECT_EQ(folder.content("Docs/a.txt"), "new");
    folder.remove("Docs/a.txt");
    transfer(TransferMode::alias);
    EXPECT_EQ(folder.names("Docs"), (std::vector<std::string> { "a alias.txt" }));
    EXPECT_EQ(folder.content("Docs/a alias.txt"), "new");
    transfer(TransferMode::move);
    EXPECT_TRUE(folder.names("source").empty());
    EXPECT_EQ(folder.content("Docs/a.txt"), "new");
}

TEST_F(ReplaceQuestionTest, TheQuestionNamesTheItemAndTheFolderInEveryMode)
{
    folder.file("Docs/a.txt", "old");
    for (auto const mode : allModes) {
        desktop.alerts.asked.clear();
        desktop.alerts.answers = { cancel };
        transfer(mode);
        ASSERT_EQ(desktop.alerts.asked.size(), 1u);
        auto const& question = desktop.alerts.asked[0];
        EXPECT_EQ(static_cast<int>(question.style), 0);
        EXPECT_EQ(question.messageText,
            "\xE2\x80\x9C"
            "a.txt\xE2\x80\x9D already exists in \xE2\x80\x9C"
            "Docs\xE2\x80\x9D.");
        EXPECT_EQ(question.informativeText, "Do you want to replace it?");
        EXPECT_EQ(question.buttons, (std::vector<std::string> { "Replace", "Cancel" }));
    }
}

TEST_F(ReplaceQuestionTest, AnyAnswerButTheFirstLeavesBothUntouchedAndSaysNothing)
{
    folder.file("Docs/a.txt", "old");
    for (auto const mode : allModes) {
        for (auto const answer : { cancel, std::size_t(2), std::size_t(1000), SIZE_MAX }) {
            desktop.calls.clear();
            desktop.alerts.answers = { answer };
            transfer(mode);
            EXPECT_EQ(desktop.calls, (CallRecord { "ask “a.txt” already exists in “Docs”." }));
        }
    }
    EXPECT_EQ(folder.content("Docs/a.txt"), "old");
    EXPECT_EQ(folder.content("source/a.txt"), "new");
    EXPECT_EQ(folder.names("Docs"), (std::vector<std::string> { "a.txt" }));
}

TEST_F(ReplaceQuestionTest, ReplaceRemovesTheOldItemAndTheNewOneTakesItsName)
{
    for (auto const mode : { TransferMode::copy, TransferMode::move }) {
        folder.file("Docs/a.txt", "old");
        desktop.alerts.answers = { replace };
        transfer(mode);
        EXPECT_EQ(folder.names("Docs"), (std::vector<std::string> { "a.txt" }));
        EXPECT_EQ(folder.content("Docs/a.txt"), "new");
    }
    EXPECT_TRUE(folder.names("source").empty());
}

TEST_F(ReplaceQuestionTest, ReplaceRemovesAFolderWithAllThatItHolds)
{
    folder.folder("Docs/a.txt/inside");
    folder.file("Docs/a.txt/inside/file", "old");
    desktop.alerts.answers = { replace };
    transfer(TransferMode::copy);
    EXPECT_EQ(folder.content("Docs/a.txt"), "new");
}

TEST_F(ReplaceQuestionTest, AnAliasAlsoReplacesTheItemOfThePlainName)
{
    folder.file("Docs/a.txt", "old");
    desktop.alerts.answers = { replace };
    transfer(TransferMode::alias);
    EXPECT_EQ(folder.names("Docs"), (std::vector<std::string> { "a alias.txt" }));
    EXPECT_EQ(desktop.calls,
        (CallRecord { "ask “a.txt” already exists in “Docs”.", "remove " + nameInDocs("a.txt"),
            "alias " + item.path() + " at " + nameInDocs("a alias.txt") }));
}

TEST_F(ReplaceQuestionTest, ANamesakeOfTheAliasIsNotAskedAbout)
{
    folder.file("Docs/a alias.txt", "old");
    transfer(TransferMode::alias);
    EXPECT_EQ(folder.names("Docs"), (std::vector<std::string> { "a alias 2.txt", "a alias.txt" }));
    EXPECT_EQ(folder.content("Docs/a alias.txt"), "old");
    EXPECT_EQ(folder.content("Docs/a alias 2.txt"), "new");
}

TEST_F(ReplaceQuestionTest, InItsOwnFolderAnItemIsAskedAboutItself)
{
    for (auto const mode : allModes) {
        desktop.alerts.answers = { cancel };
        MenuActionHandler::performCopy(item, source, mode);
        EXPECT_EQ(desktop.alerts.asked.back().messageText, "“a.txt” already exists in “source”.");
    }
    EXPECT_EQ(folder.names("source"), (std::vector<std::string> { "a.txt" }));
}

TEST_F(ReplaceQuestionTest, ReplacingAnItemByItselfDeletesItAndShowsTheError)
{
    for (auto const mode : allModes) {
        folder.file("source/a.txt", "new");
        desktop.alerts.answers = { replace, dismiss };
        desktop.alerts.errors.clear();
        MenuActionHandler::performCopy(item, source, mode);
        EXPECT_TRUE(folder.names("source").empty());
        ASSERT_EQ(desktop.alerts.errors.size(), 1u);
        EXPECT_EQ(desktop.alerts.errors[0].kind, ErrorKind::notFound);
        EXPECT_NE(desktop.alerts.errors[0].message, "");
    }
}

TEST_F(ReplaceQuestionTest, AFolderThatHoldsTheItemIsNotRemovedForIt)
{
    auto const outer = folder.folder("source/Docs");
    folder.file("source/Docs/sibling.txt", "kept");
    folder.folder("source/Docs/Docs");
    folder.file("source/Docs/Docs/b.txt", "moved");
    folder.link("way", outer.path());
    desktop.alerts.answers = { replace };
    MenuActionHandler::performCopy(folder / "way/Docs", source, TransferMode::move);
    EXPECT_EQ(folder.names("source"), (std::vector<std::string> { "Docs", "Docs 2", "a.txt" }));
    EXPECT_EQ(folder.names("source/Docs"), (std::vector<std::string> { "sibling.txt" }));
    EXPECT_EQ(folder.content("source/Docs 2/b.txt"), "moved");
}

TEST_F(ReplaceQuestionTest, WhatMayHoldTheItemIsNotRemovedForIt)
{
    folder.file("Docs/a.txt", "kept");
    for (auto const& silent : { source, FileURL(nameInDocs("a.txt")) }) {
        desktop.fileManager.silent = { silent };
        desktop.alerts.answers = { replace };
        transfer(TransferMode::copy);
        EXPECT_EQ(folder.content("Docs/a.txt"), "kept") << silent.path();
    }
    EXPECT_EQ(folder.names("Docs"), (std::vector<std::string> { "a 2.txt", "a 3.txt", "a.txt" }));
}

TEST_F(ReplaceQuestionTest, TheRootHasNoNamesakeAndCannotGoIntoAFolder)
{
    folder.file("Docs/kept.txt", "kept");
    for (auto const mode : { TransferMode::move, TransferMode::copy }) {
        desktop.alerts.answers = { dismiss };
        MenuActionHandler::performCopy(FileURL("/", true), docs, mode);
        EXPECT_TRUE(desktop.alerts.answers.empty());
    }
    ASSERT_EQ(desktop.alerts.errors.size(), 2u);
    EXPECT_EQ(desktop.alerts.errors.front().kind, ErrorKind::intoItself);
    EXPECT_EQ(folder.names("Docs"), (std::vector<std::string> { "kept.txt" }));
}

TEST_F(ReplaceQuestionTest, WhatCannotBeRemovedKeepsItsNameWithoutAWord)
{
    folder.file("Docs/a.txt", "old");
    desktop.fileTransfer.instead = [](std::string const& call) -> std::optional<Result<void>> {
        if (call.starts_with("remove "))
            return Result<void>(Error { ErrorKind::noPermission, "It stays." });
        return std::nullopt;
    };
    desktop.alerts.answers = { replace };
    transfer(TransferMode::copy);
    EXPECT_EQ(folder.content("Docs/a.txt"), "old");
    EXPECT_EQ(folder.content("Docs/a 2.txt"), "new");
    EXPECT_TRUE(desktop.alerts.errors.empty());
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(ReplaceQuestionTest, ADanglingLinkIsNotAskedAboutButKeepsItsName)
{
    folder.link("Docs/a.txt", "nowhere");
    transfer(TransferMode::copy);
    EXPECT_EQ(folder.names("Docs"), (std::vector<std::string> { "a 2.txt", "a.txt" }));
    EXPECT_EQ(folder.content("Docs/a 2.txt"), "new");
    EXPECT_EQ(desktop.calls, (CallRecord { "copy " + item.path() + " to " + nameInDocs("a 2.txt") }));
}

TEST_F(ReplaceQuestionTest, OfALinkOnlyTheLinkIsReplaced)
{
    folder.file("target.txt", "kept");
    folder.link("Docs/a.txt", "../target.txt");
    desktop.alerts.answers = { replace };
    transfer(TransferMode::copy);
    EXPECT_EQ(folder.content("target.txt"), "kept");
    EXPECT_EQ(folder.content("Docs/a.txt"), "new");
    EXPECT_EQ(folder.names("Docs"), (std::vector<std::string> { "a.txt" }));
}

TEST_F(ReplaceQuestionTest, AFailureIsShownAsTheFileSystemSaidIt)
{
    for (auto const mode : allModes) {
        Error const failure { ErrorKind::other, "The disk is full." };
        desktop.fileTransfer.instead = [&](std::string const&) { return std::optional<Result<void>>(failure); };
        desktop.alerts.answers = { dismiss };
        transfer(mode);
        EXPECT_EQ(desktop.alerts.errors.back().kind, ErrorKind::other);
        EXPECT_EQ(desktop.alerts.errors.back().message, "The disk is full.");
    }
    EXPECT_EQ(desktop.alerts.errors.size(), 3u);
    EXPECT_TRUE(desktop.alerts.asked.empty());
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(ReplaceQuestionTest, WhileTheQuestionIsUpNothingHasBeenTouched)
{
    folder.file("Docs/a.txt", "old");
    std::string contentThen;
    desktop.alerts.whileUp = [&] { contentThen = folder.content("Docs/a.txt"); };
    desktop.alerts.answers = { replace };
    transfer(TransferMode::copy);
    EXPECT_EQ(contentThen, "old");
}

TEST_F(ReplaceQuestionTest, AnItemThatHasGoneDuringTheQuestionIsReported)
{
    folder.file("Docs/a.txt", "old");
    desktop.alerts.whileUp = [&] {
        if (desktop.alerts.errors.empty())
            folder.remove("source/a.txt");
    };
    desktop.alerts.answers = { replace, dismiss };
    transfer(TransferMode::move);
    ASSERT_EQ(desktop.alerts.errors.size(), 1u);
    EXPECT_EQ(desktop.alerts.errors[0].kind, ErrorKind::notFound);
}

TEST_F(ReplaceQuestionTest, TheNamesInTheQuestionKeepTheirBytes)
{
    folder.folder("D\xFF\"");
    folder.file("D\xFF\"/%s\n\xC3", "old");
    auto const named = folder.file("source/%s\n\xC3", "new");
    desktop.alerts.answers = { cancel };
    MenuActionHandler::performCopy(named, folder / "D\xFF\"", TransferMode::copy);
    EXPECT_EQ(desktop.alerts.asked.back().messageText, "“%s\n\xC3” already exists in “D\xFF\"”.");
}

TEST_F(ReplaceQuestionTest, TheRootAsDestinationIsNamedByItsSlash)
{
    desktop.alerts.answers = { cancel };
    MenuActionHandler::performCopy(folder / "source/usr", FileURL("/"), TransferMode::copy);
    EXPECT_EQ(desktop.alerts.asked.back().messageText, "“usr” already exists in “/”.");
}

/// The entries of a template menu are copied whatever they are.
class TemplateChoiceTest : public ReplaceQuestionTest {
protected:
    void choose(MenuNodeKind kind)
    {
        MenuContext context;
        context.finderSelection = { FileURL("/selected") };
        context.copyDestinationFolder = FileURL("/elsewhere");
        desktop.events.during(Event { EventType::leftMouseUp, modifier::option }, [&] {
            MenuActionHandler::choose({ std::move(kind), "", {}, std::nullopt }, context, docs);
        });
    }
};

TEST_F(TemplateChoiceTest, AnEntryOfEveryKindIsCopiedAndNothingElseHappens)
{
    auto const file = folder.file("source/letter.txt", "letter");
    auto const script = folder.file("source/run.sh", "script");
    folder.folder("source/tree");
    folder.file("source/tree/inside", "inside");
    folder.folder("source/Templates");
    folder.folder("source/App.app");
    choose(MenuNodeKind::file(file));
    choose(MenuNodeKind::file(script));
    choose(MenuNodeKind::file(folder / "source/App.app"));
    choose(MenuNodeKind::folder(folder / "source/tree"));
    choose(MenuNodeKind::copyTemplateFolder(folder / "source/Templates"));
    CallRecord expected;
    for (auto const* name : { "letter.txt", "run.sh", "App.app", "tree", "Templates" })
        expected.push_back("copy " + source.path() + "/" + name + " to " + docs.path() + "/" + name);
    EXPECT_EQ(desktop.calls, expected);
    EXPECT_EQ(
        folder.names("Docs"), (std::vector<std::string> { "App.app", "Templates", "letter.txt", "run.sh", "tree" }));
    EXPECT_EQ(folder.content("Docs/tree/inside"), "inside");
    EXPECT_EQ(folder.content("source/letter.txt"), "letter");
}

TEST_F(TemplateChoiceTest, ATemplateWithANamesakeAsksFirst)
{
    folder.file("Docs/a.txt", "old");
    desktop.alerts.answers = { cancel };
    choose(MenuNodeKind::file(item));
    EXPECT_EQ(folder.content("Docs/a.txt"), "old");
    desktop.alerts.answers = { replace };
    choose(MenuNodeKind::file(item));
    EXPECT_EQ(folder.content("Docs/a.txt"), "new");
}

}
}
