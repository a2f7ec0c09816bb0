#include "Shared/ExtensionMenu.h"

#include "Fakes/TemporaryFolder.h"
#include "Support/ExchangeCoding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace marrowick::companion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A file manager's menu, as a program that shows one sees it.
struct PlayedMenu;
struct PlayedItem {
    GObject parent;
    std::string* name;
    std::string* label;
    PlayedMenu* menu;
};
struct PlayedMenu {
    GObject parent;
    std::vector<PlayedItem*>* items;
};

void finalizeItem(GObject* object)
{
    auto* const item = reinterpret_cast<PlayedItem*>(object);
    delete item->name;
    delete item->label;
    g_clear_object(&item->menu);
    static_cast<GObjectClass*>(g_type_class_peek(G_TYPE_OBJECT))->finalize(object);
}

void finalizeMenu(GObject* object)
{
    auto* const menu = reinterpret_cast<PlayedMenu*>(object);
    for (auto* const item : *menu->items)
        g_object_unref(item);
    delete menu->items;
    static_cast<GObjectClass*>(g_type_class_peek(G_TYPE_OBJECT))->finalize(object);
}

GType itemType()
{
    static GType const type = [] {
        auto const registered = g_type_register_static_simple(
            G_TYPE_OBJECT, "PlayedItem", sizeof(GObjectClass),
            [](void* itemClass, void*) { static_cast<GObjectClass*>(itemClass)->finalize = finalizeItem; },
            sizeof(PlayedItem), nullptr, static_cast<GTypeFlags>(0));
        g_signal_new("activate", registered, G_SIGNAL_RUN_LAST, 0, nullptr, nullptr, nullptr, G_TYPE_NONE, 0);
        return registered;
    }();
    return type;
}

GType menuType()
{
    static GType const type = g_type_register_static_simple(
        G_TYPE_OBJECT, "PlayedMenu", sizeof(GObjectClass),
        [](void* menuClass, void*) { static_cast<GObjectClass*>(menuClass)->finalize = finalizeMenu; },
        sizeof(PlayedMenu), nullptr, static_cast<GTypeFlags>(0));
    return type;
}

struct PlayedMenus {
    using Item = PlayedItem;
    using Menu = PlayedMenu;
    static Item* makeItem(char const* name, char const* label)
    {
        auto* const item = static_cast<PlayedItem*>(g_object_new(itemType(), nullptr));
        item->name = new std::string(name);
        item->label = new std::string(label);
        return item;
    }
    static Menu* makeMenu()
    {
        auto* const menu = static_cast<PlayedMenu*>(g_object_new(menuType(), nullptr));
        menu->items = new std::vector<PlayedItem*>;
        return menu;
    }
    static void setMenu(Item* item, Menu* menu)
    {
        g_object_ref(menu);
        item->menu = menu;
    }
    static void append(Menu* menu, Item* item)
    {
        g_object_ref(item);
        menu->items->push_back(item);
    }
};

class ExtensionMenuTest : public testing::Test {
public:
    ~ExtensionMenuTest() override { g_list_free_full(items_, g_object_unref); }

protected:
    void publish(std::string const& roots) const
    {
        auto const unfinished
            = folder_.file("unfinished", R"({"generated":"2026-11-16T00:44:41Z","roots":)" + roots + "}");
        ASSERT_EQ(std::rename(unfinished.path().c_str(), (folder_ / "menu-snapshot.json").path().c_str()), 0);
    }

    /// Opens the menu for `uris`, in the place of the one before.
    void open(std::vector<std::string> uris)
    {
        g_list_free_full(std::exchange(items_, nullptr), g_object_unref);
        items_ = ExtensionMenu<PlayedMenus>::make(menu_, std::move(uris));
    }

    std::vector<std::string> labels() const
    {
        std::vector<std::string> labels;
        for (GList* link = items_; link; link = link->next)
            labels.push_back(*static_cast<PlayedItem*>(link->data)->label);
        return labels;
    }

    /// The entry reached by these places, counted from 0 in each menu.
    PlayedItem* item(guint operation, std::vector<std::size_t> const& places) const
    {
        auto* item = static_cast<PlayedItem*>(g_list_nth_data(items_, operation));
        for (auto const place : places)
            item = item->menu->items->at(place);
        return item;
    }

    static void choose(PlayedItem* item) { g_signal_emit_by_name(item, "activate"); }

    /// The only request, taken off.
    std::optional<MoveRequest> takeRequest() const
    {
        auto const names = folder_.names("Requests");
        if (names.size() != 1)
            return std::nullopt;
        auto request = decodeMoveRequest(folder_.content("Requests/" + names[0]));
        folder_.remove("Requests/" + names[0]);
        return request;
    }

    TemporaryFolder folder_;
    std::shared_ptr<TransferMenu> menu_ = std::make_shared<TransferMenu>(folder_.url().path());
    GList* items_ = nullptr;
};

constexpr char const* twoRoots
    = R"([{"name":"Pro_jects","path":"\/p","children":[{"name":"Inner","path":"\/p\/i","children":[]}]},)"
      R"({"name":"Leaf","path":"\/l","children":[]}])";

}

TEST_F(ExtensionMenuTest, AbsentWithoutASnapshotARootOrASelection)
{
    open({ "file:///a" });
    EXPECT_THAT(labels(), IsEmpty());
    publish("[]");
    open({ "file:///a" });
    EXPECT_THAT(labels(), IsEmpty());
    publish(twoRoots);
    open({});
    EXPECT_THAT(labels(), IsEmpty());
    open({ "trash:///a", "sftp://host/b", "file:///%FF" });
    EXPECT_THAT(labels(), IsEmpty());
    open({ "trash:///a", "file:///b" });
    EXPECT_THAT(labels(), ElementsAre("Put Into…", "Move To", "Copy To", "Alias To"));
}

TEST_F(ExtensionMenuTest, LabelsShowUnderscores)
{
    publish(twoRoots);
    open({ "file:///a" });
    EXPECT_EQ(*item(1, { 0 })->label, "Pro__jects");
    EXPECT_EQ(*item(1, { 0, 0 })->label, "“Pro__jects”");
    EXPECT_EQ(*item(1, { 0, 1 })->label, "Inner");
    EXPECT_EQ(*item(1, { 1 })->label, "Leaf");
}

TEST_F(ExtensionMenuTest, AChoiceAsksForExactlyTheItemsOfTheMenu)
{
    publish(twoRoots);
    open({ "file:///z", "trash:///t", "file:///a%20_%25" });
    choose(item(0, { 1 }));
    EXPECT_EQ(takeRequest(), (MoveRequest { "ask", "/l", { "/z", "/a _%" } }));
    choose(item(1, { 0, 0 }));
    EXPECT_EQ(takeRequest(), (MoveRequest { "move", "/p", { "/z", "/a _%" } }));
    choose(item(2, { 0, 1 }));
    EXPECT_EQ(takeRequest(), (MoveRequest { "copy", "/p/i", { "/z", "/a _%" } }));
    choose(item(3, { 1 }));
    EXPECT_EQ(takeRequest(), (MoveRequest { "alias", "/l", { "/z", "/a _%" } }));
}

TEST_F(ExtensionMenuTest, TheNextOpeningShowsWhatWasPublishedMeanwhile)
{
    publish(twoRoots);
    open({ "file:///a" });
    publish(R"([{"name":"Other","path":"\/o","children":[]}])");
    // What is shown still means what it shows.
    choose(item(1, { 1 }));
    EXPECT_EQ(takeRequest(), (MoveRequest { "move", "/l", { "/a" } }));
    open({ "file:///a" });
    EXPECT_EQ(*item(1, { 0 })->label, "Other");
}

TEST_F(ExtensionMenuTest, EntriesAreMadeAnewOnlyForOtherFolders)
{
    publish(twoRoots);
    auto const entries = menu_->entriesFor({ "file:///a" });
    ASSERT_NE(entries, nullptr);
    EXPECT_EQ(menu_->entriesFor({ "file:///b" }), entries);
    publish(twoRoots);
    EXPECT_EQ(menu_->entriesFor({ "file:///a" }), entries);
    publish(R"([{"name":"Other","path":"\/o","children":[]}])");
    EXPECT_NE(menu_->entriesFor({ "file:///a" }), entries);
    folder_.remove("menu-snapshot.json");
    EXPECT_EQ(menu_->entriesFor({ "file:///a" }), nullptr);
}

TEST_F(ExtensionMenuTest, AMenuThatOutlivesTheExtensionDoesNothing)
{
    publish(twoRoots);
    open({ "file:///a" });
    menu_.reset();
    choose(item(1, { 1 }));
    EXPECT_THAT(folder_.names(""), ElementsAre("menu-snapshot.json"));
}

TEST_F(ExtensionMenuTest, AClosedMenuIsGivenToTheNextThatOffersTheSame)
{
    publish(twoRoots);
    open({ "file:///a" });
    auto* const first = item(1, { 1 });
    open({});
    // The same folders under another date.
    publish(twoRoots);
    open({ "file:///b", "file:///c" });
    EXPECT_EQ(item(1, { 1 }), first);
    choose(first);
    EXPECT_EQ(takeRequest(), (MoveRequest { "move", "/l", { "/b", "/c" } }));
}

TEST_F(ExtensionMenuTest, AMenuThatIsStillShownKeepsItsMeaning)
{
    publish(twoRoots);
    open({ "file:///a" });
    GList* const shown = std::exchange(items_, nullptr);
    auto* const leaf = static_cast<PlayedItem*>(shown->data)->menu->items->at(1);
    open({ "file:///b" });
    EXPECT_NE(item(0, { 1 }), leaf);
    choose(leaf);
    EXPECT_EQ(takeRequest(), (MoveRequest { "ask", "/l", { "/a" } }));
    choose(item(0, { 1 }));
    EXPECT_EQ(takeRequest(), (MoveRequest { "ask", "/l", { "/b" } }));
    g_list_free_full(shown, g_object_unref);
}

TEST_F(ExtensionMenuTest, AMenuOfWhichOneItemIsHeldIsNotGivenToAnother)
{
    publish(twoRoots);
    open({ "file:///a" });
    auto* const held = static_cast<PlayedItem*>(g_object_ref(item(3, {})));
    open({});
    open({ "file:///b" });
    EXPECT_NE(item(3, {}), held);
    g_object_unref(held);
}

TEST_F(ExtensionMenuTest, OtherFoldersLetGoOfWhatOfferedTheFormer)
{
    publish(twoRoots);
    open({ "file:///a" });
    std::weak_ptr<MenuEntries const> const former = menu_->entriesFor({ "file:///a" });
    publish(R"([{"name":"Other","path":"\/o","children":[]}])");
    GList* const shown = std::exchange(items_, nullptr);
    open({ "file:///a" });
    EXPECT_FALSE(former.expired());
    g_list_free_full(shown, g_object_unref);
    open({ "file:///a" });
    EXPECT_TRUE(former.expired());
}

TEST_F(ExtensionMenuTest, TheEndOfTheExtensionLetsGoOfAll)
{
    publish(twoRoots);
    open({ "file:///a" });
    std::weak_ptr<MenuEntries const> const entries = menu_->entriesFor({ "file:///a" });
    open({});
    menu_.reset();
    EXPECT_TRUE(entries.expired());
}

}
