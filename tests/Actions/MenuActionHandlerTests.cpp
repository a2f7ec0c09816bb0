#include "Actions/MenuActionHandler.h"
#include "Fakes/FakeRunningApplication.h"
#include "Fakes/TestPlatform.h"
#include "Menus/MainThreadOnlyBox.h"

#include <any>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

FileURL const url("/a/caf\xE9.txt");

std::vector<MenuNodeKind> const kindsWithAFile { MenuNodeKind::file(url), MenuNodeKind::folder(url),
    MenuNodeKind::copyTemplateFolder(url) };
std::vector<MenuNodeKind> const kindsWithoutAFile { MenuNodeKind::divider(), MenuNodeKind::allAppsSubmenu(),
    MenuNodeKind::desktopSubmenu(), MenuNodeKind::processesSubmenu(), MenuNodeKind::prefPanesSubmenu(),
    MenuNodeKind::recentItemsSubmenu() };

MenuNode nodeOf(MenuNodeKind kind)
{
    return { std::move(kind), "title", {}, std::nullopt };
}

class ChooseTest : public PlatformTest {
protected:
    void choose(MenuNodeKind kind, std::optional<FileURL> const& copyDestination = std::nullopt)
    {
        MenuActionHandler::choose(nodeOf(std::move(kind)), context, copyDestination);
    }

    MenuContext context;
};

TEST_F(ChooseTest, AFileOpens)
{
    choose(MenuNodeKind::file(url));
    EXPECT_EQ(desktop.workspace.opened, (std::vector { url }));
    EXPECT_EQ(desktop.workspace.opened.front().path(), "/a/caf\xE9.txt");
}

TEST_F(ChooseTest, AFolderOpensWhileNothingIsSelected)
{
    choose(MenuNodeKind::folder(url));
    EXPECT_EQ(desktop.workspace.opened, (std::vector { url }));
}

TEST_F(ChooseTest, AFolderDoesNotOpenWhileFilesAreSelected)
{
    context.finderSelection = { FileURL("/selected/one"), FileURL("/selected/two") };
    choose(MenuNodeKind::folder(url));
    EXPECT_TRUE(desktop.workspace.opened.empty());
}

TEST_F(ChooseTest, ATemplateFolderItselfDoesNothing)
{
    choose(MenuNodeKind::copyTemplateFolder(url));
    EXPECT_TRUE(desktop.workspace.opened.empty());
}

TEST_F(ChooseTest, AnEntryWithoutAFileDoesNothing)
{
    for (auto const& kind : kindsWithoutAFile) {
        choose(kind);
        choose(kind, FileURL("/destination"));
    }
    EXPECT_TRUE(desktop.workspace.opened.empty());
}

TEST_F(ChooseTest, ATemplateIsNotOpenedWhateverItsKind)
{
    for (auto const& kind : kindsWithAFile)
        choose(kind, FileURL("/destination"));
    EXPECT_TRUE(desktop.workspace.opened.empty());
}

class PerformModifierTest : public PlatformTest {
protected:
    static void perform(ModifierAction action, std::any represented)
    {
        MenuActionHandler::performModifier(action, MainThreadOnlyBox { std::move(represented) });
    }
    static std::any application(std::optional<FileURL> bundle)
    {
        auto made = FakeRunningApplication::make("org.example.Editor");
        made->bundle = std::move(bundle);
        return std::shared_ptr<RunningApplication>(made);
    }
};

TEST_F(PerformModifierTest, BothRevealActionsRevealTheFileOfAnyEntryThatHasOne)
{
    for (auto const action : { ModifierAction::reveal, ModifierAction::revealAlternate }) {
        for (auto const& kind : kindsWithAFile) {
            desktop.workspace.revealed.clear();
            perform(action, nodeOf(kind));
            EXPECT_EQ(desktop.workspace.revealed, (FakeWorkspace::Revealed { { url } }));
        }
    }
    EXPECT_TRUE(desktop.workspace.opened.empty());
}

TEST_F(PerformModifierTest, AnEntryWithoutAFileIsNotRevealed)
{
    for (auto const& kind : kindsWithoutAFile)
        perform(ModifierAction::reveal, nodeOf(kind));
    EXPECT_TRUE(desktop.workspace.revealed.empty());
}

TEST_F(PerformModifierTest, AnApplicationIsRevealedByItsBundle)
{
    perform(ModifierAction::reveal, application(url));
    perform(ModifierAction::revealAlternate, application(url));
    EXPECT_EQ(desktop.workspace.revealed, (FakeWorkspace::Revealed { { url }, { url } }));
}

TEST_F(PerformModifierTest, AnApplicationWithoutABundleIsNotRevealed)
{
    perform(ModifierAction::reveal, application(std::nullopt));
    perform(ModifierAction::reveal, std::shared_ptr<RunningApplication>());
    EXPECT_TRUE(desktop.workspace.revealed.empty());
}

TEST_F(PerformModifierTest, WhatIsNeitherANodeNorAnApplicationIsIgnored)
{
    for (auto const& represented : { std::any(), std::any(url), std::any(std::string("/a")), std::any(1) })
        perform(ModifierAction::reveal, represented);
    EXPECT_TRUE(desktop.workspace.revealed.empty());
}

TEST_F(PerformModifierTest, WithoutAFileNothingHappens)
{
    MenuActionHandler::performModifier(ModifierAction::reveal, std::optional<FileURL>());
    EXPECT_TRUE(desktop.workspace.revealed.empty());
    MenuActionHandler::performModifier(ModifierAction::reveal, std::optional(url));
    EXPECT_EQ(desktop.workspace.revealed, (FakeWorkspace::Revealed { { url } }));
}

TEST_F(PerformModifierTest, OtherActionsRevealNothing)
{
    for (auto const action : { ModifierAction::trash, ModifierAction::forceQuit, ModifierAction::finderInfo,
             ModifierAction::quickLook, ModifierAction::quickLookAlternate, ModifierAction::infoWindow }) {
        perform(action, nodeOf(MenuNodeKind::file(url)));
        perform(action, application(url));
    }
    EXPECT_TRUE(desktop.workspace.revealed.empty());
}

}
}
