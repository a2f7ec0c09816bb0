#include "Fakes/FakeRunningApplication.h"
#include "Menus/MWMenuKeyTest.h"

#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

TEST_F(MWMenuKeyTest, DeleteAsksAboutTheHighlightedFileWhenTheMenuHasClosed)
{
    for (auto const* key : { "\x7F", "\b" }) {
        desktop.calls.clear();
        auto const menu = desktop.menus.menu();
        bool wasOpen = true;
        desktop.alerts.whileUp = [&] { wasOpen = desktop.menus.isOpen(); };
        desktop.alerts.answers = { 0 };
        desktop.menus.highlight("file");
        EXPECT_TRUE(desktop.menus.press(key));
        EXPECT_FALSE(wasOpen);
        EXPECT_EQ(desktop.calls, (CallRecord { "ask Move “file.txt” to the Trash?", "recycle /a/file.txt" }));
        desktop.menus.popUp(menu, nullptr);
    }
    EXPECT_EQ(desktop.menus.cancellations, 2);
}

TEST_F(MWMenuKeyTest, AQuestionClosesTheMenuAlsoWithImmediateActionOff)
{
    desktop.defaults.set("immedActionOnKeyPress", false);
    desktop.alerts.answers = { 1 };
    desktop.menus.highlight("file");
    EXPECT_TRUE(desktop.menus.press("\x7F"));
    EXPECT_EQ(desktop.calls, (CallRecord { "ask Move “file.txt” to the Trash?" }));
    EXPECT_FALSE(desktop.menus.isOpen());
}

TEST_F(MWMenuKeyTest, TheMenuMayGoAwayWhileItsQuestionIsUp)
{
    std::weak_ptr<Menu> const menu = desktop.menus.menu();
    desktop.alerts.whileUp = [&] { desktop.menus.popUp(MWMenu::make("another"), nullptr); };
    desktop.alerts.answers = { 0 };
    desktop.menus.highlight("file");
    EXPECT_TRUE(desktop.menus.press("\x7F"));
    EXPECT_EQ(desktop.workspace.recycled, (std::vector<std::vector<FileURL>> { { fileURL } }));
    EXPECT_TRUE(menu.expired());
}

TEST_F(MWMenuKeyTest, EveryKeyDoesItsActionOnTheHighlightedFile)
{
    struct Row {
        char const* key;
        ModifierFlags flags;
        CallRecord calls;
    };
    CallRecord const reveals { "reveal /a/file.txt" };
    CallRecord const informs { "information window of /a/file.txt" };
    CallRecord const asks { "ask Move “file.txt” to the Trash?" };
    CallRecord const previews { "preview asks", "preview in front", "preview reloads" };
    CallRecord const tells { "info in front" };
    desktop.fileManager.values[FileURL("/a/file.txt")] = {};
    desktop.fileContents.inaccessible.insert(FileURL("/a/file.txt"));
    using namespace modifier;
    auto const menu = desktop.menus.menu();
    for (auto const& [key, flags, calls] : {
             Row { "r", {}, reveals },
             Row { "g", {}, reveals },
             Row { "z", command, reveals },
             Row { "i", {}, informs },
             Row { "z", command | option, informs },
             Row { "p", {}, previews },
             Row { "q", {}, previews },
             Row { "z", command | option | shift, previews },
             Row { "\t", {}, tells },
             Row { "\x7F", {}, asks },
             Row { "z", command | option | control, asks },
         }) {
        desktop.calls.clear();
        if (calls == asks)
            desktop.alerts.answers = { 1 };
        desktop.menus.popUp(menu, nullptr);
        desktop.menus.highlight("file");
        EXPECT_TRUE(desktop.menus.press(key, flags)) << key;
        EXPECT_EQ(desktop.calls, calls) << key;
    }
}

TEST_F(MWMenuKeyTest, DeleteQuitsTheHighlightedApplicationWithoutAQuestion)
{
    auto const application = FakeRunningApplication::make("org.example.Editor");
    auto const menu = MWMenu::make("Processes");
    menu->addItem(itemOf("Editor", std::shared_ptr<RunningApplication>(application)));
    desktop.menus.popUp(menu, nullptr);
    desktop.menus.highlight("Editor");
    EXPECT_TRUE(desktop.menus.press("\x7F"));
    EXPECT_EQ(application->terminations, 1);
    EXPECT_EQ(application->forcedTerminations, 0);
    EXPECT_TRUE(desktop.calls.empty());
}

}
}
