#include "AppDelegate.h"
#include "Fakes/DiskTest.h"
#include "Fakes/FakeRunningApplication.h"
#include "Menus/MWMenu.h"
#include "Platform/SharedObjects.h"
#include "Support/AppEnvironment.h"

#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Shown = std::vector<std::string>;
constexpr auto emptyEntry = "[(Empty — drag items into this folder)]";
Shown const appMenu { "Preferences…", "Reveal Items Folder", "---", "Quit Marrowick" };

class AppDelegateTest : public DiskTest {
protected:
    AppDelegateTest() { desktop.defaults.set("itemsFolderPath", items.path()); }

    void launch() { delegate->applicationDidFinishLaunching(); }
    /// What the menu of a click shows; nothing when none opened.
    Shown shownAfter(EventType type, ModifierFlags flags = {})
    {
        desktop.menus.cancelTracking();
        desktop.statusBar.click(type, flags);
        return desktop.menus.shown();
    }
    std::string titleAfter(EventType type, ModifierFlags flags)
    {
        desktop.menus.cancelTracking();
        desktop.statusBar.click(type, flags);
        return desktop.menus.isOpen() ? desktop.menus.menu()->title : "no menu";
    }
    void setSpecialSubmenus(bool desktopMenu, bool processes, bool prefPanes, bool recentItems)
    {
        desktop.defaults.set("addDesktopSubmenu", desktopMenu);
        desktop.defaults.set("addProcessesSubmenu", processes);
        desktop.defaults.set("addPrefPanesSubmenu", prefPanes);
        desktop.defaults.set("addRecentItemsSubmenu", recentItems);
    }

    FileURL const items = folder / "Items";
    std::shared_ptr<AppDelegate> delegate = std::make_shared<AppDelegate>();
};

constexpr auto leftClick = EventType::leftMouseUp;
constexpr auto rightClick = EventType::rightMouseUp;

TEST_F(AppDelegateTest, LaunchMakesAnAccessoryWithAnItemsFolder)
{
    launch();
    EXPECT_TRUE(desktop.application.isAccessory);
    EXPECT_TRUE(std::filesystem::is_directory(items.path()));
    EXPECT_TRUE(desktop.log.lines().empty());
}

TEST_F(AppDelegateTest, LaunchBeginsToFollowTheFrontmostApplication)
{
    launch();
    EXPECT_EQ(desktop.workspace.observerCount(), 1u);
    auto const editor = FakeRunningApplication::make("org.example.Editor");
    desktop.workspace.activate(editor);
    EXPECT_EQ(AppEnvironment::shared().lastFrontmostOtherApp(), editor);
}

TEST_F(AppDelegateTest, LaunchBeginsTheExchangeWithTheFileManager)
{
    launch();
    auto const support = folder / "support/Marrowick";
    EXPECT_EQ(desktop.dispatch.watched(), (std::vector { support.appendingPathComponent("Requests"), items }));
    desktop.dispatch.runBackground();
    EXPECT_EQ(folder.names("support/Marrowick"), (Shown { "Requests", "menu-snapshot.json" }));
}

TEST_F(AppDelegateTest, RequestsLeftOverAreTakenBeforeTheItemIsShown)
{
    auto const path = folder.folder("Dest").path();
    folder.folder("support/Marrowick/Requests");
    folder.file("support/Marrowick/menu-snapshot.json",
        R"({"generated":"2026-11-16T00:44:41Z","roots":[{"name":"","path":")" + path + R"(","children":[]}]})");
    folder.file("support/Marrowick/Requests/a.json", R"({"op":"ask","dest":")" + path + R"(","sources":[]})");
    desktop.alerts.answers = { 3 };
    desktop.alerts.whileUp = [&] {
        EXPECT_TRUE(std::filesystem::is_directory(items.path()));
        EXPECT_EQ(desktop.workspace.observerCount(), 1u);
        EXPECT_FALSE(desktop.statusBar.item->isShown);
    };
    launch();
    EXPECT_EQ(desktop.alerts.asked.size(), 1u);
    EXPECT_TRUE(desktop.statusBar.item->isShown);
}

TEST_F(AppDelegateTest, LaunchShowsASquareItemWithItsSymbolAndName)
{
    launch();
    auto const& item = *desktop.statusBar.item;
    EXPECT_TRUE(item.isShown);
    EXPECT_EQ(item.length, -2);
    EXPECT_EQ(item.image, Image::systemSymbol("arrowtriangle.down.square", "Marrowick"));
    EXPECT_EQ(item.eventMask, 0x14u);
}

TEST_F(AppDelegateTest, TheItemIsKeptForTheRun)
{
    launch();
    EXPECT_TRUE(desktop.statusBar.item->isShown);
    delegate.reset();
    EXPECT_FALSE(desktop.statusBar.item->isShown);
}

TEST_F(AppDelegateTest, AnItemWithoutAButtonStaysWithoutImageAndAction)
{
    desktop.statusBar.item->hasButton = false;
    launch();
    EXPECT_TRUE(desktop.statusBar.item->isShown);
    EXPECT_FALSE(desktop.statusBar.item->image);
    EXPECT_FALSE(desktop.statusBar.item->action);
    desktop.events.during(Event { leftClick, {} }, [&] { delegate->statusItemClicked(); });
    EXPECT_FALSE(desktop.menus.isOpen());
}

TEST_F(AppDelegateTest, AClickWithoutACurrentEventDoesNothing)
{
    launch();
    delegate->statusItemClicked();
    EXPECT_EQ(desktop.menus.popUps, 0);
}

TEST_F(AppDelegateTest, AClickBeforeTheLaunchDoesNothing)
{
    desktop.events.during(Event { leftClick, {} }, [&] { delegate->statusItemClicked(); });
    EXPECT_EQ(desktop.menus.popUps, 0);
}

TEST_F(AppDelegateTest, OnlyReleasedButtonsCount)
{
    launch();
    EXPECT_EQ(shownAfter(EventType::leftMouseDown), Shown {});
    EXPECT_EQ(shownAfter(EventType::rightMouseDown), Shown {});
    EXPECT_EQ(desktop.menus.popUps, 0);
}

TEST_F(AppDelegateTest, TheClickAndTheModifiersPickTheMenu)
{
    desktop.fileManager.standardDirectories[StandardDirectory::desktop] = { folder.folder("Desktop") };
    desktop.fileManager.volumes = { FileURL("/") };
    launch();
    for (unsigned bits = 0; bits < 32; ++bits) {
        ModifierFlags const flags(std::uint64_t { bits } << 16);
        auto const* expected = flags.contains(modifier::shift) ? "Desktop"
            : flags.contains(modifier::command)                ? "Processes"
                                                               : "Marrowick";
        EXPECT_EQ(titleAfter(leftClick, flags), expected) << bits;
        EXPECT_EQ(shownAfter(rightClick, flags), appMenu) << bits;
        EXPECT_EQ(desktop.menus.menu()->title, "Marrowick");
    }
}

TEST_F(AppDelegateTest, TheMenuPopsUpBesideTheItem)
{
    launch();
    desktop.statusBar.click(leftClick);
    ASSERT_NE(desktop.menus.poppedUpBeside, nullptr);
    EXPECT_EQ(desktop.menus.popUps, 1);
}

TEST_F(AppDelegateTest, EachClickBuildsAMenuOfItsOwn)
{
    launch();
    desktop.statusBar.click(leftClick);
    std::weak_ptr<Menu> const first = desktop.menus.menu();
    desktop.statusBar.click(leftClick);
    EXPECT_TRUE(first.expired());
    std::weak_ptr<Menu> const second = desktop.menus.menu();
    desktop.menus.cancelTracking();
    EXPECT_TRUE(second.expired());
}

TEST_F(AppDelegateTest, TheApplicationMenuHasItsKeyEquivalents)
{
    launch();
    ASSERT_EQ(shownAfter(rightClick), appMenu);
    EXPECT_EQ(desktop.menus.item("Preferences…")->keyEquivalent, ",");
    EXPECT_EQ(desktop.menus.item("Reveal Items Folder")->keyEquivalent, "");
    EXPECT_EQ(desktop.menus.item("Quit Marrowick")->keyEquivalent, "q");
}

TEST_F(AppDelegateTest, AHostsOwnMenuIsTheApplicationMenu)
{
    launch();
    ASSERT_TRUE(desktop.statusBar.item->makeHostMenu);
    desktop.menus.popUp(desktop.statusBar.item->makeHostMenu(), nullptr);
    EXPECT_EQ(desktop.menus.shown(), appMenu);
    desktop.menus.choose("Quit Marrowick");
    EXPECT_EQ(desktop.application.terminations, 1);
}

TEST_F(AppDelegateTest, AnEmptyItemsFolderWithDefaultsShowsThePlaceholderFirst)
{
    launch();
    EXPECT_EQ(shownAfter(leftClick),
        (Shown { emptyEntry, "---", "Desktop", "Processes", "Recent Items", "---", "Preferences…", "Quit Marrowick" }));
}

TEST_F(AppDelegateTest, AnEmptyItemsFolderMayShowNothing)
{
    launch();
    desktop.defaults.set("ignoreEmptyItemsFolder", true);
    setSpecialSubmenus(false, false, false, false);
    EXPECT_EQ(shownAfter(leftClick), (Shown { "---", "Preferences…", "Quit Marrowick" }));
}

TEST_F(AppDelegateTest, WithoutSpecialSubmenusOneSeparatorFollowsTheItems)
{
    launch();
    folder.file("Items/a");
    folder.folder("Items/b");
    setSpecialSubmenus(false, false, false, false);
    EXPECT_EQ(shownAfter(leftClick), (Shown { "a", "b", "---", "Preferences…", "Quit Marrowick" }));
}

TEST_F(AppDelegateTest, EachSpecialSubmenuFollowsItsSettingInFixedOrder)
{
    launch();
    for (unsigned bits = 0; bits < 16; ++bits) {
        setSpecialSubmenus((bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0);
        Shown expected { emptyEntry };
        if (bits != 0)
            expected.emplace_back("---");
        std::vector<std::string> const titles { "Desktop", "Processes", "Preference Panes", "Recent Items" };
        for (unsigned index = 0; index < titles.size(); ++index) {
            if (bits >> index & 1)
                expected.push_back(titles[index]);
        }
        expected.insert(expected.end(), { "---", "Preferences…", "Quit Marrowick" });
        EXPECT_EQ(shownAfter(leftClick), expected) << bits;
    }
}

TEST_F(AppDelegateTest, ASpecialEntryHasItsSymbolItsMenuAndNothingElse)
{
    launch();
    setSpecialSubmenus(true, true, true, true);
    desktop.statusBar.click(leftClick);
    std::vector<std::pair<std::string, std::string>> const symbols { { "Desktop", "menubar.dock.rectangle" },
        { "Processes", "square.stack.3d.up" }, { "Preference Panes", "gearshape" }, { "Recent Items", "clock" } };
    for (auto const& [title, symbol] : symbols) {
        auto const item = desktop.menus.item(title);
        EXPECT_EQ(item->image, Image::systemSymbol(symbol));
        EXPECT_FALSE(item->action);
        EXPECT_EQ(item->keyEquivalent, "");
        EXPECT_FALSE(item->representedObject.has_value());
        EXPECT_TRUE(item->isEnabled);
        ASSERT_NE(std::dynamic_pointer_cast<MWMenu>(item->submenu()), nullptr);
    }
    EXPECT_EQ(desktop.menus.item("Desktop")->submenu()->title, "Desktop");
    EXPECT_EQ(desktop.menus.item("Processes")->submenu()->title, "Processes");
    EXPECT_EQ(desktop.menus.item("Recent Items")->submenu()->title, "Recent Items");
}

TEST_F(AppDelegateTest, TheMainMenuHasItsKeyEquivalentsAndNoRevealEntry)
{
    launch();
    desktop.statusBar.click(leftClick);
    EXPECT_EQ(desktop.menus.item("Preferences…")->keyEquivalent, ",");
    EXPECT_EQ(desktop.menus.item("Quit Marrowick")->keyEquivalent, "q");
    for (auto const& item : desktop.menus.menu()->items())
        EXPECT_NE(item->title, "Reveal Items Folder");
}

TEST_F(AppDelegateTest, TheItemsFolderIsReadFromTheSettingsAtEachClick)
{
    launch();
    setSpecialSubmenus(false, false, false, false);
    folder.folder("Other");
    folder.file("Other/there");
    desktop.defaults.set("itemsFolderPath", (folder / "Other").path());
    EXPECT_EQ(shownAfter(leftClick), (Shown { "there", "---", "Preferences…", "Quit Marrowick" }));
}

TEST_F(AppDelegateTest, ItemsStandAtTheTopLevelWhateverTheInlineSetting)
{
    launch();
    folder.file("Items/a");
    setSpecialSubmenus(false, false, false, false);
    for (bool const inlineItems : { true, false }) {
        desktop.defaults.set("inlineItemsIntoMainMenu", inlineItems);
        EXPECT_EQ(shownAfter(leftClick), (Shown { "a", "---", "Preferences…", "Quit Marrowick" }));
    }
}

TEST_F(AppDelegateTest, AMenuOpenedAgainIsFilledAnewAndOnce)
{
    launch();
    setSpecialSubmenus(false, false, false, false);
    desktop.statusBar.click(leftClick);
    auto const menu = desktop.menus.menu();
    folder.file("Items/new");
    setSpecialSubmenus(false, true, false, false);
    desktop.fileManager.listed.clear();
    menu->menuNeedsUpdate(*menu);
    EXPECT_EQ(desktop.menus.shown(), (Shown { "new", "---", "Processes", "---", "Preferences…", "Quit Marrowick" }));
    EXPECT_EQ(desktop.fileManager.listed, (std::vector { items }));
}

TEST_F(AppDelegateTest, AMenuThatOutlivesTheProgramShowsItsItemsOnly)
{
    launch();
    folder.file("Items/a");
    desktop.statusBar.click(leftClick);
    delegate.reset();
    auto const menu = desktop.menus.menu();
    menu->menuNeedsUpdate(*menu);
    EXPECT_EQ(desktop.menus.shown(), (Shown { "a" }));
}

TEST_F(AppDelegateTest, EntriesOfAMenuThatOutlivesTheProgramDoNothing)
{
    launch();
    auto const menu = desktop.statusBar.item->makeHostMenu();
    delegate.reset();
    for (auto const* title : { "Preferences…", "Reveal Items Folder", "Quit Marrowick" }) {
        desktop.menus.popUp(menu, nullptr);
        desktop.menus.choose(title);
    }
    EXPECT_EQ(desktop.application.terminations, 0);
    EXPECT_TRUE(desktop.workspace.revealed.empty());
}

TEST_F(AppDelegateTest, RefreshingAMenuThatIsGoneDoesNothing)
{
    launch();
    desktop.statusBar.click(leftClick);
    auto const refresh = std::dynamic_pointer_cast<MWMenu>(desktop.menus.menu())->refresh;
    desktop.menus.cancelTracking();
    desktop.finder.questions.clear();
    refresh();
    EXPECT_TRUE(desktop.finder.questions.empty());
}

TEST_F(AppDelegateTest, QuitEndsTheProgram)
{
    launch();
    for (auto const click : { leftClick, rightClick }) {
        desktop.statusBar.click(click);
        desktop.menus.choose("Quit Marrowick");
    }
    EXPECT_EQ(desktop.application.terminations, 2);
    EXPECT_FALSE(desktop.menus.isOpen());
}

TEST_F(AppDelegateTest, PreferencesAreAnEntryThatCanBeChosen)
{
    launch();
    for (auto const click : { leftClick, rightClick }) {
        desktop.statusBar.click(click);
        EXPECT_TRUE(desktop.menus.item("Preferences…")->action);
        desktop.menus.choose("Preferences…");
    }
    EXPECT_EQ(desktop.application.terminations, 0);
}

TEST_F(AppDelegateTest, TheItemsFolderIsRevealedInItsParent)
{
    launch();
    desktop.statusBar.click(rightClick);
    desktop.menus.choose("Reveal Items Folder");
    EXPECT_EQ(desktop.workspace.revealed, (FakeWorkspace::Revealed { { items } }));
}

TEST_F(AppDelegateTest, RevealingADeletedItemsFolderMakesItAgain)
{
    launch();
    folder.remove("Items");
    bool existed = false;
    desktop.workspace.whenAsked = [&] { existed = std::filesystem::is_directory(items.path()); };
    desktop.statusBar.click(rightClick);
    desktop.menus.choose("Reveal Items Folder");
    EXPECT_TRUE(existed);
    EXPECT_EQ(desktop.workspace.revealed, (FakeWorkspace::Revealed { { items } }));
}

TEST_F(AppDelegateTest, AnotherStartPopsTheMainMenuUpAtThePointer)
{
    launch();
    folder.file("Items/a");
    setSpecialSubmenus(false, false, false, false);
    desktop.events.held = modifier::shift;
    desktop.application.startAgain();
    EXPECT_EQ(desktop.menus.shown(), (Shown { "a", "---", "Preferences…", "Quit Marrowick" }));
    EXPECT_EQ(desktop.menus.poppedUpBeside, nullptr);
}

TEST_F(AppDelegateTest, AnotherStartAfterTheEndDoesNothing)
{
    launch();
    auto const action = desktop.statusBar.item->action;
    auto const hostMenu = desktop.statusBar.item->makeHostMenu;
    delegate.reset();
    desktop.application.startAgain();
    desktop.events.during(Event { leftClick, {} }, action);
    EXPECT_EQ(desktop.menus.popUps, 0);
    EXPECT_EQ(hostMenu(), nullptr);
}

TEST_F(AppDelegateTest, AKeyOnACommandOfTheProgramIsSwallowed)
{
    launch();
    desktop.statusBar.click(rightClick);
    desktop.menus.highlight("Quit Marrowick");
    EXPECT_TRUE(desktop.menus.press("q"));
    EXPECT_TRUE(desktop.menus.press("q", modifier::command));
    EXPECT_EQ(desktop.application.terminations, 0);
    EXPECT_TRUE(desktop.menus.isOpen());
}

TEST_F(AppDelegateTest, TheSelectionIsAskedForOnceAtAClick)
{
    launch();
    EXPECT_TRUE(desktop.finder.questions.empty());
    desktop.statusBar.click(leftClick);
    EXPECT_EQ(desktop.finder.timesAsked(FakeFinder::selectionText), 1u);
    EXPECT_EQ(desktop.finder.timesAsked(FakeFinder::frontWindowText), 1u);
}

TEST_F(AppDelegateTest, AnItemsFolderThatCannotBeMadeIsNoHindrance)
{
    folder.file("file");
    desktop.defaults.set("itemsFolderPath", (folder / "file/Items").path());
    launch();
    setSpecialSubmenus(false, false, false, false);
    EXPECT_EQ(shownAfter(leftClick), (Shown { emptyEntry, "---", "Preferences…", "Quit Marrowick" }));
}

TEST_F(AppDelegateTest, CallsOnAnotherThreadStopTheProgram)
{
    launch();
    desktop.log.echoToStandardError();
    EXPECT_DEATH(std::thread([&] { delegate->statusItemClicked(); }).join(), "main thread");
    EXPECT_DEATH(std::thread([&] { delegate->quit(); }).join(), "main thread");
    EXPECT_DEATH(std::thread([&] { delegate->revealItemsFolder(); }).join(), "main thread");
    EXPECT_DEATH(std::thread([&] { delegate->openPreferences(); }).join(), "main thread");
}

}
}
