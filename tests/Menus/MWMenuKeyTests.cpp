#include "Fakes/FakeRunningApplication.h"
#include "Menus/MWMenuKeyTest.h"

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

TEST_F(MWMenuKeyTest, RevealsTheHighlightedEntry)
{
    desktop.menus.highlight("file");
    EXPECT_TRUE(desktop.menus.press("r"));
    expectRevealed(fileURL);
    EXPECT_EQ(desktop.menus.keysPassedOn, 0);
}

TEST_F(MWMenuKeyTest, TheAlternateKeyRevealsToo)
{
    desktop.menus.highlight("file");
    EXPECT_TRUE(desktop.menus.press("g"));
    expectRevealed(fileURL);
}

TEST_F(MWMenuKeyTest, CommandWithAnyKeyReveals)
{
    desktop.menus.highlight("file");
    EXPECT_TRUE(desktop.menus.press("x", modifier::command));
    expectRevealed(fileURL);
}

TEST_F(MWMenuKeyTest, WithoutAHighlightedEntryTheKeyIsSwallowed)
{
    expectSwallowed("r");
    expectSwallowed("r", modifier::command);
}

TEST_F(MWMenuKeyTest, AfterTheHighlightHasLeftTheKeyIsSwallowed)
{
    desktop.menus.highlight("file");
    desktop.menus.unhighlight();
    expectSwallowed("r");
}

TEST_F(MWMenuKeyTest, OnADisabledEntryTheKeyIsSwallowed)
{
    desktop.menus.highlight("disabled");
    expectSwallowed("r");
    expectSwallowed("i");
    expectSwallowed("x", modifier::command);
}

TEST_F(MWMenuKeyTest, OnAnEntryThatRepresentsNothingTheKeyIsSwallowed)
{
    desktop.menus.highlight("command");
    expectSwallowed("r");
}

TEST_F(MWMenuKeyTest, OnAnEntryWithoutAFileTheKeyDoesNothingElse)
{
    auto const menu = desktop.menus.menu();
    for (auto const* title : { "placeholder", "text" }) {
        desktop.menus.popUp(menu, nullptr);
        desktop.menus.highlight(title);
        EXPECT_TRUE(desktop.menus.press("r"));
        EXPECT_FALSE(desktop.menus.isOpen());
        EXPECT_TRUE(desktop.workspace.revealed.empty());
    }
}

TEST_F(MWMenuKeyTest, AnEntryThatIsGoneIsNotActedOn)
{
    desktop.menus.highlight("file");
    desktop.menus.menu()->removeAllItems();
    expectSwallowed("r");
}

TEST_F(MWMenuKeyTest, ActsOnTheEntryThatIsHighlightedNow)
{
    desktop.menus.highlight("file");
    desktop.menus.highlight("other");
    desktop.menus.press("r");
    expectRevealed(FileURL("/a/other"));
}

TEST_F(MWMenuKeyTest, RevealsTheFileThatARunningApplicationIsStartedBy)
{
    auto const application = FakeRunningApplication::make("org.example.Editor");
    application->bundle = FileURL("/a/editor.desktop");
    auto const menu = MWMenu::make("Processes");
    menu->addItem(itemOf("Editor", std::shared_ptr<RunningApplication>(application)));
    desktop.menus.popUp(menu, nullptr);
    desktop.menus.highlight("Editor");
    EXPECT_TRUE(desktop.menus.press("r"));
    expectRevealed(FileURL("/a/editor.desktop"));
}

TEST_F(MWMenuKeyTest, AKeyThatIsNoActionGoesToTheDesktopAndItsAnswerCounts)
{
    desktop.menus.highlight("file");
    int passedOn = 0;
    for (bool const answer : { true, false }) {
        desktop.menus.platformsAnswer = answer;
        EXPECT_EQ(desktop.menus.press("x"), answer);
        EXPECT_EQ(desktop.menus.press("R", modifier::shift), answer);
        EXPECT_EQ(desktop.menus.press("r", modifier::shift), answer);
        EXPECT_EQ(desktop.menus.press("r", modifier::deviceIndependent), answer);
        EXPECT_EQ(desktop.menus.press(""), answer);
        EXPECT_EQ(desktop.menus.keysPassedOn, passedOn += 5);
    }
    EXPECT_TRUE(desktop.workspace.revealed.empty());
    EXPECT_TRUE(desktop.menus.isOpen());
}

TEST_F(MWMenuKeyTest, WhatIsNoKeyDownGoesToTheDesktop)
{
    desktop.menus.highlight("file");
    int passedOn = 0;
    for (auto const type : { EventType::keyUp, EventType::leftMouseUp }) {
        for (bool const answer : { true, false }) {
            desktop.menus.platformsAnswer = answer;
            EXPECT_EQ(desktop.menus.press({ type, {}, "r" }), answer);
            EXPECT_EQ(desktop.menus.press({ type, modifier::command, "r" }), answer);
            EXPECT_EQ(desktop.menus.keysPassedOn, passedOn += 2);
        }
    }
    EXPECT_TRUE(desktop.workspace.revealed.empty());
}

TEST_F(MWMenuKeyTest, TheMenuClosesBeforeTheActionRuns)
{
    bool wasOpen = true;
    desktop.workspace.whenAsked = [&] { wasOpen = desktop.menus.isOpen(); };
    desktop.menus.highlight("file");
    desktop.menus.press("r");
    expectRevealed(fileURL);
    EXPECT_FALSE(wasOpen);
    EXPECT_EQ(desktop.menus.cancellations, 1);
}

TEST_F(MWMenuKeyTest, WithImmediateActionOffTheMenuStaysOpen)
{
    desktop.defaults.set("immedActionOnKeyPress", false);
    desktop.menus.highlight("file");
    EXPECT_TRUE(desktop.menus.press("r"));
    EXPECT_TRUE(desktop.menus.press("r"));
    EXPECT_EQ(desktop.workspace.revealed.size(), 2u);
    EXPECT_TRUE(desktop.menus.isOpen());
    EXPECT_EQ(desktop.menus.cancellations, 0);
    EXPECT_TRUE(desktop.menus.press("p"));
    EXPECT_TRUE(desktop.menus.press("i"));
    EXPECT_EQ(desktop.finder.informationWindows, (std::vector { fileURL }));
    EXPECT_TRUE(desktop.menus.isOpen());
}

TEST_F(MWMenuKeyTest, AMenuThatIsReleasedWhenItClosesStillActs)
{
    std::weak_ptr<Menu> const watched = desktop.menus.menu();
    desktop.menus.highlight("file");
    auto const receiver = desktop.menus.menu();
    desktop.menus.press("r");
    expectRevealed(fileURL);
    EXPECT_EQ(watched.use_count(), 1);
}

TEST_F(MWMenuKeyTest, EachMenuActsOnItsOwnHighlightedEntry)
{
    auto const submenu = MWMenu::make("");
    submenu->addItem(itemOf("inside", nodeOf(MenuNodeKind::file(FileURL("/a/inside")))));
    auto holder = itemOf("holder", nodeOf(MenuNodeKind::folder(FileURL("/a/holder"))));
    holder->setSubmenu(submenu);
    desktop.menus.menu()->addItem(std::move(holder));
    desktop.defaults.set("immedActionOnKeyPress", false);

    desktop.menus.openSubmenu("holder");
    desktop.menus.press("r");
    desktop.menus.highlight("inside");
    desktop.menus.press("r");
    desktop.menus.unhighlight();
    desktop.menus.press("r");
    FakeWorkspace::Revealed const expected { { FileURL("/a/holder") }, { FileURL("/a/inside") },
        { FileURL("/a/holder") } };
    EXPECT_EQ(desktop.workspace.revealed, expected);
    EXPECT_TRUE(submenu->performKeyEquivalent({ EventType::keyDown, {}, "r" }, [] { return false; }));
    EXPECT_EQ(desktop.workspace.revealed, expected);
}

TEST_F(MWMenuKeyTest, AKeyOnAnotherThreadStopsTheProgram)
{
    desktop.log.echoToStandardError();
    auto const menu = desktop.menus.menu();
    EXPECT_DEATH(std::thread([&] {
        menu->performKeyEquivalent({ EventType::keyDown, {}, "r" }, [] { return false; });
    }).join(),
        "main thread");
}

}
}
