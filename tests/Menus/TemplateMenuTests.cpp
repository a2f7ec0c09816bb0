#include "Fakes/DiskTest.h"
#include "Menus/MWMenu.h"
#include "Menus/MenuBuilder.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

class TemplateMenuTest : public DiskTest {
protected:
    TemplateMenuTest()
    {
        folder.folder("Templates---C/nested/deeper");
        folder.folder("Templates---C/inner---C");
        folder.folder("ordinary");
        folder.file("Templates---C/letter.txt");
        folder.file("Templates---C/nested/script.sh");
        desktop.finder.frontWindow = FileURL("/front");
        desktop.menus.popUp(MenuBuilder::buildItemsMenu("", folder.url(), std::nullopt), nullptr);
    }

    std::optional<FileURL> destination() const
    {
        auto const menu = std::dynamic_pointer_cast<MWMenu>(desktop.menus.menu());
        return menu ? menu->copyDestination : std::nullopt;
    }
};

TEST_F(TemplateMenuTest, OrdinaryMenusHaveNoDestination)
{
    EXPECT_EQ(destination(), std::nullopt);
    desktop.menus.openSubmenu("ordinary");
    EXPECT_EQ(destination(), std::nullopt);
}

TEST_F(TemplateMenuTest, TheDestinationIsTheFrontWindowWhenTheParentMenuWasFilled)
{
    desktop.finder.frontWindow = FileURL("/other");
    desktop.menus.openSubmenu("Templates");
    EXPECT_EQ(destination(), FileURL("/front"));
}

TEST_F(TemplateMenuTest, FoldersInsideInheritTheDestination)
{
    desktop.menus.openSubmenu("Templates");
    desktop.finder.frontWindow = FileURL("/other");
    desktop.menus.openSubmenu("nested");
    EXPECT_EQ(destination(), FileURL("/front"));
    desktop.menus.openSubmenu("deeper");
    EXPECT_EQ(destination(), FileURL("/front"));
}

TEST_F(TemplateMenuTest, ATemplateFolderInsideTakesTheFrontWindowOfItsOwnFilling)
{
    desktop.finder.frontWindow = FileURL("/other");
    desktop.menus.openSubmenu("Templates");
    desktop.menus.openSubmenu("inner");
    EXPECT_EQ(destination(), FileURL("/other"));
}

TEST_F(TemplateMenuTest, WithoutAFrontWindowThereIsNoDestination)
{
    desktop.finder.frontWindow = std::nullopt;
    desktop.menus.popUp(MenuBuilder::buildItemsMenu("", folder.url(), std::nullopt), nullptr);
    desktop.menus.openSubmenu("Templates");
    EXPECT_EQ(destination(), std::nullopt);
}

TEST_F(TemplateMenuTest, AChosenTemplateIsCopiedIntoTheMenusDestinationAndNotOpened)
{
    auto const front = folder.folder("front");
    desktop.finder.frontWindow = front;
    desktop.menus.popUp(MenuBuilder::buildItemsMenu("", folder.url(), std::nullopt), nullptr);
    desktop.finder.frontWindow = folder.folder("later");
    desktop.menus.openSubmenu("Templates");
    desktop.menus.choose("letter.txt");
    EXPECT_EQ(desktop.calls,
        (CallRecord {
            "copy " + (folder / "Templates---C/letter.txt").path() + " to " + front.path() + "/letter.txt" }));
    EXPECT_EQ(folder.names("front"), (std::vector<std::string> { "letter.txt" }));
    EXPECT_TRUE(folder.names("later").empty());
}

TEST_F(TemplateMenuTest, ATemplateDeepInsideIsCopiedWhateverItIs)
{
    desktop.finder.frontWindow = folder.folder("front");
    desktop.menus.popUp(MenuBuilder::buildItemsMenu("", folder.url(), std::nullopt), nullptr);
    desktop.menus.openSubmenu("Templates");
    desktop.menus.openSubmenu("nested");
    desktop.finder.selectTwoFiles();
    desktop.menus.choose("script.sh");
    EXPECT_EQ(folder.names("front"), (std::vector<std::string> { "script.sh" }));
    EXPECT_TRUE(desktop.tasks.launched.empty());
}

TEST_F(TemplateMenuTest, WithoutADestinationATemplateIsAnOrdinaryEntry)
{
    desktop.finder.frontWindow = std::nullopt;
    desktop.menus.popUp(MenuBuilder::buildItemsMenu("", folder.url(), std::nullopt), nullptr);
    desktop.menus.openSubmenu("Templates");
    desktop.menus.choose("letter.txt");
    EXPECT_EQ(desktop.calls, (CallRecord { "open " + (folder / "Templates---C/letter.txt").path() }));
}

TEST_F(TemplateMenuTest, ATemplateFileCodedAsAFolderHasAnEmptySubmenu)
{
    folder.file("Note---C");
    desktop.menus.popUp(MenuBuilder::buildItemsMenu("", folder.url(), std::nullopt), nullptr);
    desktop.menus.openSubmenu("Note");
    EXPECT_EQ(desktop.menus.shown(), (std::vector<std::string> { "[(Empty — drag items into this folder)]" }));
}

}
}
