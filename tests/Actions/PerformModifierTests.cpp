#include "Actions/EntryKinds.h"
#include "Actions/MenuActionHandler.h"
#include "Fakes/FakeRunningApplication.h"
#include "Fakes/TestPlatform.h"
#include "Menus/MainThreadOnlyBox.h"

#include <any>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

FileURL const url("/a/caf\xE9.txt");

constexpr ModifierAction allActions[] { ModifierAction::trash, ModifierAction::forceQuit, ModifierAction::reveal,
    ModifierAction::finderInfo, ModifierAction::quickLook, ModifierAction::revealAlternate,
    ModifierAction::quickLookAlternate, ModifierAction::infoWindow };

CallRecord const preview { "preview asks", "preview in front", "preview reloads" };

class PerformModifierTest : public PlatformTest {
protected:
    static void perform(ModifierAction action, std::any represented)
    {
        MenuActionHandler::performModifier(action, MainThreadOnlyBox { std::move(represented) });
    }
    static std::any represented(std::shared_ptr<FakeRunningApplication> const& application)
    {
        return std::shared_ptr<RunningApplication>(application);
    }
    static std::shared_ptr<FakeRunningApplication> applicationAt(std::optional<FileURL> bundle)
    {
        auto application = FakeRunningApplication::make("org.example.Editor");
        application->bundle = std::move(bundle);
        return application;
    }
    CallRecord callsOf(ModifierAction action, std::any const& object)
    {
        // What the Info window asks of the disk.
        for (auto const& item : { url, FileURL("/apps/Editor") }) {
            desktop.fileManager.values[item] = {};
            desktop.fileContents.inaccessible.insert(item);
        }
        desktop.calls.clear();
        perform(action, object);
        return std::exchange(desktop.calls, {});
    }
};

TEST_F(PerformModifierTest, TheActionsHaveTheirStoredValues)
{
    for (std::size_t value = 0; value < std::size(allActions); ++value)
        EXPECT_EQ(static_cast<std::size_t>(allActions[value]), value);
    static_assert(sizeof(ModifierAction) == 1);
}

TEST_F(PerformModifierTest, EachActionDoesItsOwnToTheFileOfAnyEntryThatHasOne)
{
    std::vector<std::pair<ModifierAction, CallRecord>> const rows {
        { ModifierAction::trash, { "ask Move “caf\xE9.txt” to the Trash?", "recycle /a/caf\xE9.txt" } },
        { ModifierAction::forceQuit, { "ask Move “caf\xE9.txt” to the Trash?", "recycle /a/caf\xE9.txt" } },
        { ModifierAction::reveal, { "reveal /a/caf\xE9.txt" } },
        { ModifierAction::finderInfo, { "information window of /a/caf\xE9.txt" } },
        { ModifierAction::quickLook, preview },
        { ModifierAction::revealAlternate, { "reveal /a/caf\xE9.txt" } },
        { ModifierAction::quickLookAlternate, preview },
        { ModifierAction::infoWindow, { "info in front" } },
    };
    for (auto const& kind : kindsWithAFile(url)) {
        for (auto const& [action, calls] : rows) {
            bool const asks = action == ModifierAction::trash || action == ModifierAction::forceQuit;
            if (asks)
                desktop.alerts.answers.push_back(0);
            EXPECT_EQ(callsOf(action, nodeOf(kind)), calls) << static_cast<int>(action);
        }
    }
}

TEST_F(PerformModifierTest, RevealsOneFileInOneCall)
{
    perform(ModifierAction::reveal, nodeOf(MenuNodeKind::file(url)));
    EXPECT_EQ(desktop.workspace.revealed, (FakeWorkspace::Revealed { { url } }));
}

TEST_F(PerformModifierTest, NothingIsDoneToAnEntryWithoutAFile)
{
    for (auto const& kind : kindsWithoutAFile()) {
        for (auto const action : allActions)
            EXPECT_EQ(callsOf(action, nodeOf(kind)), CallRecord {}) << static_cast<int>(action);
    }
}

TEST_F(PerformModifierTest, EachActionDoesItsOwnToAnApplicationsBundle)
{
    std::vector<std::pair<ModifierAction, CallRecord>> const rows {
        { ModifierAction::reveal, { "reveal /apps/Editor" } },
        { ModifierAction::finderInfo, { "information window of /apps/Editor" } },
        { ModifierAction::quickLook, preview },
        { ModifierAction::revealAlternate, { "reveal /apps/Editor" } },
        { ModifierAction::quickLookAlternate, preview },
        { ModifierAction::infoWindow, { "info in front" } },
    };
    auto const application = applicationAt(FileURL("/apps/Editor"));
    for (auto const& [action, calls] : rows)
        EXPECT_EQ(callsOf(action, represented(application)), calls) << static_cast<int>(action);
    EXPECT_EQ(application->terminations, 0);
    EXPECT_EQ(application->forcedTerminations, 0);
}

TEST_F(PerformModifierTest, TrashAsksAnApplicationToQuitWithoutAQuestion)
{
    auto const application = applicationAt(FileURL("/apps/Editor"));
    EXPECT_EQ(callsOf(ModifierAction::trash, represented(application)), CallRecord {});
    EXPECT_EQ(application->terminations, 1);
    EXPECT_EQ(application->forcedTerminations, 0);
}

TEST_F(PerformModifierTest, ForceQuitEndsAnApplicationWithoutAQuestion)
{
    auto const application = applicationAt(FileURL("/apps/Editor"));
    EXPECT_EQ(callsOf(ModifierAction::forceQuit, represented(application)), CallRecord {});
    EXPECT_EQ(application->terminations, 0);
    EXPECT_EQ(application->forcedTerminations, 1);
}

TEST_F(PerformModifierTest, AnApplicationWithoutABundleCanOnlyBeQuit)
{
    auto const application = applicationAt(std::nullopt);
    for (auto const action : allActions)
        EXPECT_EQ(callsOf(action, represented(application)), CallRecord {}) << static_cast<int>(action);
    EXPECT_EQ(application->terminations, 1);
    EXPECT_EQ(application->forcedTerminations, 1);
}

TEST_F(PerformModifierTest, WhatIsNeitherANodeNorAnApplicationIsIgnored)
{
    auto const application = applicationAt(FileURL("/apps/Editor"));
    std::vector<std::any> const others { {}, url, std::optional(url), std::string("/a"), 1, MenuNodeKind::file(url),
        application, std::shared_ptr<RunningApplication>() };
    for (auto const& other : others) {
        for (auto const action : allActions)
            EXPECT_EQ(callsOf(action, other), CallRecord {}) << static_cast<int>(action);
    }
    // Only the exact type of an entry's application counts.
    EXPECT_EQ(application->terminations, 0);
}

TEST_F(PerformModifierTest, WithoutAFileNothingHappens)
{
    for (auto const action : allActions)
        MenuActionHandler::performModifier(action, std::optional<FileURL>());
    EXPECT_TRUE(desktop.calls.empty());
    MenuActionHandler::performModifier(ModifierAction::reveal, std::optional(url));
    EXPECT_EQ(desktop.calls, (CallRecord { "reveal /a/caf\xE9.txt" }));
}

class ConfirmTrashTest : public PlatformTest { };

TEST_F(ConfirmTrashTest, AsksByTheFilesNameInOneWarning)
{
    desktop.alerts.answers = { 1 };
    MenuActionHandler::confirmTrash(FileURL("/a/b/a.txt"));
    ASSERT_EQ(desktop.alerts.asked.size(), 1u);
    auto const& question = desktop.alerts.asked[0];
    EXPECT_EQ(question.style, AlertStyle::warning);
    EXPECT_EQ(static_cast<int>(question.style), 0);
    EXPECT_EQ(question.messageText,
        "Move \xE2\x80\x9C"
        "a.txt\xE2\x80\x9D to the Trash?");
    EXPECT_EQ(question.informativeText, "");
    EXPECT_EQ(question.buttons, (std::vector<std::string> { "Move to Trash", "Cancel" }));
}

TEST_F(ConfirmTrashTest, TheFirstAnswerMovesTheFileToTheTrash)
{
    desktop.alerts.answers = { 0 };
    MenuActionHandler::confirmTrash(url);
    EXPECT_EQ(desktop.workspace.recycled, (std::vector<std::vector<FileURL>> { { url } }));
}

TEST_F(ConfirmTrashTest, AnyOtherAnswerLeavesTheFileAlone)
{
    for (auto const answer : { std::size_t(1), std::size_t(2), std::size_t(1000), SIZE_MAX }) {
        desktop.alerts.answers = { answer };
        MenuActionHandler::confirmTrash(url);
    }
    EXPECT_EQ(desktop.alerts.asked.size(), 4u);
    EXPECT_TRUE(desktop.workspace.recycled.empty());
}

TEST_F(ConfirmTrashTest, AFailureStaysSilent)
{
    desktop.alerts.answers = { 0 };
    MenuActionHandler::confirmTrash(url);
    desktop.workspace.finishRecycling(Error { ErrorKind::noPermission, "There is no trash." });
    desktop.dispatch.runMain();
    EXPECT_EQ(desktop.alerts.asked.size(), 1u);
    EXPECT_TRUE(desktop.alerts.errors.empty());
    EXPECT_TRUE(desktop.log.lines().empty());
}

}
}
