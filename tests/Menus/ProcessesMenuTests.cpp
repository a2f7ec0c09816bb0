#include "Fakes/DiskTest.h"
#include "Fakes/FakeRunningApplication.h"
#include "Fakes/TestPlatform.h"
#include "Menus/MWProcessMenuTarget.h"
#include "Menus/ProcessesMenuBuilder.h"

#include <any>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Shown = std::vector<std::string>;
using Options = std::vector<ActivationOptions>;
constexpr auto preferences = "Marrowick Preferences…";

class ProcessesMenuTest : public PlatformTest {
protected:
    std::shared_ptr<FakeRunningApplication> start(
        std::string const& name, ActivationPolicy policy = ActivationPolicy::regular)
    {
        auto application = FakeRunningApplication::make("com.example." + name);
        application->name = name;
        application->policy = policy;
        desktop.workspace.running.push_back(application);
        return application;
    }

    Shown open(bool includeBackgroundOnly = false)
    {
        desktop.menus.popUp(ProcessesMenuBuilder::build(includeBackgroundOnly), nullptr);
        return desktop.menus.shown();
    }

    /// What is shown without the entry for the preferences.
    Shown openAlone(bool includeBackgroundOnly = false)
    {
        desktop.defaults.set("addMarrowickToProcessMenu", false);
        return open(includeBackgroundOnly);
    }
};

TEST_F(ProcessesMenuTest, ItIsMadeEmptyAndFilledWhenItOpens)
{
    start("Editor");
    auto const menu = ProcessesMenuBuilder::build(false);
    EXPECT_EQ(menu->title, "Processes");
    EXPECT_TRUE(menu->items().empty());
    desktop.menus.popUp(menu, nullptr);
    EXPECT_EQ(desktop.menus.shown(), (Shown { "Editor", "---", preferences }));
}

TEST_F(ProcessesMenuTest, ItIsFilledAnewEachTimeItOpens)
{
    start("Editor");
    auto const menu = ProcessesMenuBuilder::build(false);
    desktop.menus.popUp(menu, nullptr);
    start("Browser");
    desktop.menus.popUp(menu, nullptr);
    EXPECT_EQ(desktop.menus.shown(), (Shown { "Browser", "Editor", "---", preferences }));
}

TEST_F(ProcessesMenuTest, ItsRefreshingDoesNothingOnceTheMenuIsGone)
{
    auto menu = ProcessesMenuBuilder::build(false);
    auto const refresh = menu->refresh;
    std::weak_ptr<Menu> const weakMenu = menu;
    menu.reset();
    ASSERT_TRUE(weakMenu.expired());
    refresh();
}

TEST_F(ProcessesMenuTest, ThisProgramNeverListsItself)
{
    start("Editor");
    start("Marrowick")->identifier = desktop.application.identifier;
    EXPECT_EQ(openAlone(), (Shown { "Editor" }));
}

TEST_F(ProcessesMenuTest, AnApplicationWithoutIdentifierIsListed)
{
    start("Editor")->identifier = std::nullopt;
    EXPECT_EQ(openAlone(), (Shown { "Editor" }));
}

TEST_F(ProcessesMenuTest, TwoMissingIdentifiersAreEqual)
{
    desktop.application.identifier = std::nullopt;
    start("Nameless")->identifier = std::nullopt;
    start("Editor");
    EXPECT_EQ(openAlone(), (Shown { "Editor" }));
}

TEST_F(ProcessesMenuTest, ABackgroundOnlyAgentIsListedOnlyWhileControlIsHeld)
{
    start("Editor");
    start("Helper", ActivationPolicy::accessory);
    start("Agent", ActivationPolicy::prohibited);
    EXPECT_EQ(openAlone(), (Shown { "Editor", "Helper" }));
    desktop.events.held = modifier::control | modifier::shift;
    EXPECT_EQ(openAlone(), (Shown { "Agent", "Editor", "Helper" }));
    desktop.events.held = modifier::option | modifier::command;
    EXPECT_EQ(openAlone(), (Shown { "Editor", "Helper" }));
}

TEST_F(ProcessesMenuTest, BackgroundOnlyAgentsAreLookedForOnlyWhereTheyAreListed)
{
    openAlone();
    desktop.events.held = modifier::control;
    openAlone();
    desktop.events.held = {};
    openAlone(true);
    EXPECT_EQ(desktop.workspace.backgroundAskedFor,
        (std::vector { BackgroundOnly::leftOut, BackgroundOnly::included, BackgroundOnly::included }));
}

TEST_F(ProcessesMenuTest, AMenuOfAllListsBackgroundOnlyAgentsToo)
{
    start("Agent", ActivationPolicy::prohibited);
    EXPECT_EQ(openAlone(true), (Shown { "Agent" }));
}

TEST_F(ProcessesMenuTest, TheOrderIsTheUsersOrTheDesktops)
{
    for (auto const* name : { "beta", "app 10", "App 9", "Beta", "alpha" })
        start(name);
    EXPECT_EQ(openAlone(), (Shown { "alpha", "App 9", "app 10", "beta", "Beta" }));
    desktop.defaults.set("sortProcessMenu", false);
    EXPECT_EQ(openAlone(), (Shown { "beta", "app 10", "App 9", "Beta", "alpha" }));
}

TEST_F(ProcessesMenuTest, AnApplicationWithoutNameIsUnknownAndSortsFirst)
{
    start("(a");
    start("x")->name = std::nullopt;
    EXPECT_EQ(openAlone(), (Shown { "(unknown)", "(a" }));
}

TEST_F(ProcessesMenuTest, NothingToListIsSaid)
{
    EXPECT_EQ(openAlone(), (Shown { "[(No processes)]" }));
    desktop.defaults.set("addMarrowickToProcessMenu", true);
    EXPECT_EQ(open(), (Shown { "[(No processes)]", "---", preferences }));
}

TEST_F(ProcessesMenuTest, AnEntryCarriesItsApplicationAndNoKey)
{
    auto const application = start("Editor");
    open();
    auto const item = desktop.menus.item("Editor");
    auto const* represented = std::any_cast<std::shared_ptr<RunningApplication>>(&item->representedObject);
    ASSERT_TRUE(represented);
    EXPECT_EQ(*represented, application);
    EXPECT_EQ(item->keyEquivalent, "");
    EXPECT_FALSE(item->submenu());
    EXPECT_EQ(desktop.menus.item(preferences)->keyEquivalent, "");
}

TEST_F(ProcessesMenuTest, TheIconIsSmallAndAHiddenApplicationsFaded)
{
    auto picture = Image::iconForFile(FileURL("/usr/share/applications/editor.desktop"), 0);
    auto const application = start("Editor");
    application->picture = picture;
    picture.pointSize = 16;
    open();
    EXPECT_EQ(desktop.menus.item("Editor")->image, picture);

    application->hidden = true;
    picture.opacity = 0.4;
    open();
    EXPECT_EQ(desktop.menus.item("Editor")->image, picture);
}

class ChosenProcessTest : public ProcessesMenuTest {
protected:
    /// Chooses an entry while the keys of the event are not those of this moment.
    Options choose(std::optional<Event> const& event)
    {
        auto const application = start("Editor");
        open();
        auto const item = desktop.menus.item("Editor");
        desktop.events.during(event, [&] { item->action(*item); });
        return application->activations;
    }
};

TEST_F(ChosenProcessTest, AllWindowsComeForward)
{
    EXPECT_EQ(choose(Event { EventType::leftMouseUp, {} }), Options { ActivationOptions::allWindows });
}

TEST_F(ChosenProcessTest, WithOptionOnlyTheFrontWindowComesForward)
{
    EXPECT_EQ(choose(Event { EventType::leftMouseUp, modifier::option | modifier::shift }),
        Options { ActivationOptions::none });
}

TEST_F(ChosenProcessTest, OtherKeysMakeNoDifference)
{
    EXPECT_EQ(choose(Event { EventType::leftMouseUp, modifier::command | modifier::control }),
        Options { ActivationOptions::allWindows });
}

TEST_F(ChosenProcessTest, TheEventCountsAndNotTheKeysOfThisMoment)
{
    desktop.events.held = modifier::option;
    EXPECT_EQ(choose(Event { EventType::leftMouseUp, {} }), Options { ActivationOptions::allWindows });
}

TEST_F(ChosenProcessTest, WithoutAnEventAllWindowsComeForward)
{
    desktop.events.held = modifier::option;
    EXPECT_EQ(choose(std::nullopt), Options { ActivationOptions::allWindows });
}

TEST_F(ChosenProcessTest, AnApplicationThatHasQuitMeanwhileIsAskedAllTheSame)
{
    auto const application = start("Editor");
    open();
    desktop.workspace.running.clear();
    desktop.menus.choose("Editor");
    EXPECT_EQ(application->activations, Options { ActivationOptions::allWindows });
}

TEST_F(ChosenProcessTest, AnEntryWithoutApplicationDoesNothing)
{
    for (auto const& represented : { std::any(), std::any(1), std::any(std::shared_ptr<RunningApplication>()) }) {
        auto const item = MenuItem::make("title");
        item->representedObject = represented;
        MWProcessMenuTarget::shared().chooseProcess(*item);
    }
    EXPECT_TRUE(desktop.calls.empty());
}

class ProcessesPreferencesTest : public DiskTest { };

TEST_F(ProcessesPreferencesTest, TheLastEntryShowsThePreferences)
{
    desktop.defaults.set("itemsFolderPath", folder.url().path());
    desktop.menus.popUp(ProcessesMenuBuilder::build(false), nullptr);
    desktop.menus.choose(preferences);
    EXPECT_EQ(desktop.windows.preferences.timesShown, 1);
}

TEST_F(ProcessesMenuTest, KeysActOnTheHighlightedApplication)
{
    auto const application = start("Editor");
    application->bundle = FileURL("/usr/share/applications/editor.desktop");
    open();
    desktop.menus.highlight("Editor");
    EXPECT_TRUE(desktop.menus.press("r"));
    EXPECT_EQ(desktop.workspace.revealed, (FakeWorkspace::Revealed { { *application->bundle } }));
}

}
}
