#pragma once

#include "Fakes/TestPlatform.h"
#include "Menus/MWMenu.h"
#include "Models/MenuNode.h"

#include <any>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

namespace marrowick {

inline FileURL const fileURL("/a/file.txt");

inline MenuNode nodeOf(MenuNodeKind kind)
{
    return { std::move(kind), "title", {}, std::nullopt };
}

inline std::shared_ptr<MenuItem> itemOf(std::string title, std::any represented)
{
    auto item = MenuItem::make(std::move(title), [](MenuItem&) { ADD_FAILURE() << "a key must choose nothing"; });
    item->representedObject = std::move(represented);
    return item;
}

/// A menu is open with an entry of each sort.
class MWMenuKeyTest : public PlatformTest {
protected:
    MWMenuKeyTest()
    {
        auto const menu = MWMenu::make("Title");
        menu->addItem(itemOf("file", nodeOf(MenuNodeKind::file(fileURL))));
        menu->addItem(itemOf("other", nodeOf(MenuNodeKind::file(FileURL("/a/other")))));
        menu->addItem(itemOf("placeholder", nodeOf(MenuNodeKind::desktopSubmenu())));
        menu->addItem(itemOf("text", std::string("no node")));
        menu->addItem(MenuItem::make("command"));
        auto disabled = itemOf("disabled", nodeOf(MenuNodeKind::file(fileURL)));
        disabled->isEnabled = false;
        menu->addItem(std::move(disabled));
        desktop.menus.popUp(menu, nullptr);
    }

    void expectSwallowed(std::string_view key, ModifierFlags flags = {})
    {
        EXPECT_TRUE(desktop.menus.press(key, flags));
        EXPECT_EQ(desktop.menus.keysPassedOn, 0);
        EXPECT_TRUE(desktop.menus.isOpen());
        EXPECT_TRUE(desktop.workspace.revealed.empty());
        EXPECT_TRUE(desktop.workspace.opened.empty());
        EXPECT_TRUE(desktop.finder.questions.empty());
    }

    void expectRevealed(FileURL const& url)
    {
        EXPECT_EQ(desktop.workspace.revealed, (FakeWorkspace::Revealed { { url } }));
    }
};

}
