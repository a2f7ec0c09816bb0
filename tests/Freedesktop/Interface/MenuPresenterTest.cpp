#include "Freedesktop/Interface/MenuSession.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QWindow>

namespace marrowick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MenuPresenterTest : public MenuSession {
protected:
    /// As an alert does.
    static void serveEvents()
    {
        for (int i = 0; i < 20; ++i) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
};

TEST_F(MenuPresenterTest, ShowsTheEntriesInOrder)
{
    auto const menu = makeMenu({ "one", "two" });
    menu->addItem(MenuItem::makeSeparator());
    auto const disabled = MenuItem::make("three");
    disabled->isEnabled = false;
    menu->addItem(disabled);

    auto const actions = open(menu).actions();
    ASSERT_EQ(actions.size(), 4);
    EXPECT_EQ(actions[0]->text(), "one");
    EXPECT_EQ(actions[1]->text(), "two");
    EXPECT_TRUE(actions[2]->isSeparator());
    EXPECT_EQ(actions[3]->text(), "three");
    EXPECT_TRUE(actions[0]->isEnabled());
    EXPECT_FALSE(actions[3]->isEnabled());
}

TEST_F(MenuPresenterTest, SeparatorsStandWhereTheMenuHasThem)
{
    auto const menu = std::make_shared<RecordingMenu>("");
    for (auto const* title : { "", "", "x", "", "", "y", "" })
        menu->addItem(*title ? MenuItem::make(title) : MenuItem::makeSeparator());
    auto const& view = open(menu);
    for (auto const* action : view.actions()) {
        EXPECT_TRUE(action->isVisible());
        EXPECT_GT(view.actionGeometry(const_cast<QAction*>(action)).height(), 0);
    }
}

TEST_F(MenuPresenterTest, TheMenuIsUpdatedOnceBeforeItIsPlaced)
{
    auto const menu = makeMenu({});
    menu->onUpdate = [](RecordingMenu& self) {
        self.removeAllItems();
        for (int i = 0; i < 8; ++i)
            self.addItem(MenuItem::make("entry"));
        EXPECT_EQ(deepest(), nullptr);
    };
    movePointer({ 300, QGuiApplication::primaryScreen()->geometry().bottom() - 20 });
    presenter_->popUp(menu, nullptr);
    ASSERT_TRUE(waitForDepth(1));
    EXPECT_EQ(menu->updates, 1);
    EXPECT_EQ(deepest()->actions().size(), 8);
    // At the lower edge it opens upwards, which takes knowing its size.
    EXPECT_LE(deepest()->geometry().bottom(), QGuiApplication::primaryScreen()->geometry().bottom() - 20);
    EXPECT_GE(deepest()->geometry().bottom(), QGuiApplication::primaryScreen()->geometry().bottom() - 22);
}

TEST_F(MenuPresenterTest, ASubmenuIsUpdatedAtEachOfItsOpeningsAtEveryDepth)
{
    std::vector<std::shared_ptr<RecordingMenu>> menus;
    for (int i = 0; i < 4; ++i)
        menus.push_back(std::make_shared<RecordingMenu>(""));
    auto const counts = [&menus] {
        std::vector<int> updates;
        for (auto const& menu : menus)
            updates.push_back(menu->updates);
        return updates;
    };
    // Each is empty until its own update.
    for (std::size_t i = 0; i < 3; ++i) {
        menus[i]->onUpdate = [&menus, i](RecordingMenu& self) {
            self.removeAllItems();
            addSubmenu(self, "deeper", menus[i + 1]);
        };
    }
    menus[3]->onUpdate = [](RecordingMenu& self) {
        self.removeAllItems();
        self.addItem(MenuItem::make("bottom"));
    };

    open(menus[0]);
    EXPECT_THAT(counts(), ElementsAre(1, 0, 0, 0));
    pressKey("Down");
    for (int i = 2; i <= 4; ++i) {
        pressKey("Right");
        ASSERT_TRUE(waitForDepth(i));
    }
    EXPECT_THAT(counts(), ElementsAre(1, 1, 1, 1));
    EXPECT_TRUE(waitForHighlight(*deepest(), "bottom"));

    pressKey("Left");
    ASSERT_TRUE(waitForDepth(3));
    pressKey("Left");
    ASSERT_TRUE(waitForDepth(2));
    pressKey("Right");
    ASSERT_TRUE(waitForDepth(3));
    EXPECT_THAT(counts(), ElementsAre(1, 1, 2, 1));

    presenter_->cancelTracking();
    open(menus[0]);
    EXPECT_THAT(counts(), ElementsAre(2, 1, 2, 1));
}

TEST_F(MenuPresenterTest, SubmenusThatHaveTurnedLeftGoOnToTheLeft)
{
    auto const root = makeMenu({});
    auto menu = root;
    for (int level = 2; level <= 4; ++level) {
        auto const submenu = makeMenu({});
        addSubmenu(*menu, "deeper", submenu);
        menu = submenu;
    }
    menu->addItem(MenuItem::make("bottom"));

    movePointer(QGuiApplication::primaryScreen()->geometry().topRight());
    presenter_->popUp(root, nullptr);
    ASSERT_TRUE(waitForDepth(1));
    pressKey("Down");
    for (int depth = 2; depth <= 4; ++depth) {
        pressKey("Right");
        ASSERT_TRUE(waitForDepth(depth));
        auto const* const view = deepest();
        EXPECT_LT(view->x(), view->parentView()->x()) << "at depth " << depth;
    }
    ASSERT_TRUE(waitForHighlight(*deepest(), "bottom"));
}

TEST_F(MenuPresenterTest, ASubmenuOpensWhenThePointerRestsOnItsEntry)
{
    auto const inner = makeMenu({ "inside" });
    auto const menu = makeMenu({ "one" });
    addSubmenu(*menu, "folder", inner);
    auto const& view = open(menu);
    moveTo(view, "folder");
    ASSERT_TRUE(waitForDepth(2));
    EXPECT_EQ(inner->updates, 1);
    EXPECT_EQ(deepest()->actions().size(), 1);
    moveTo(view, "one");
    ASSERT_TRUE(waitForDepth(1));
    moveTo(view, "folder");
    ASSERT_TRUE(waitForDepth(2));
    EXPECT_EQ(inner->updates, 2);
}

TEST_F(MenuPresenterTest, ThePointerTravelsOverManySubmenus)
{
    auto const menu = std::make_shared<RecordingMenu>("");
    for (int i = 0; i < 12; ++i)
        addSubmenu(*menu, "folder " + std::to_string(i), makeMenu({ "a", "b" }));
    auto const& view = open(menu);
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 12; ++i) {
            moveTo(view, "folder " + std::to_string(i));
            ASSERT_TRUE(waitForHighlight(view, "folder " + std::to_string(i)));
            if (i % 3 == round) {
                ASSERT_TRUE(waitFor([&] {
                    return deepest() && deepest()->parentEntry()
                        && deepest()->parentEntry()->item()->title == "folder " + std::to_string(i);
                }));
            }
        }
    }
}

TEST_F(MenuPresenterTest, AChosenActionRunsAfterAllMenusHaveClosed)
{
    int depthInAction = -1;
    std::optional<Event> event;
    std::string sender;
    auto const inner = makeMenu({ "inside" }, [&](MenuItem& item) {
        depthInAction = depth();
        event = events_.currentEvent();
        sender = item.title;
    });
    auto const menu = makeMenu({ "one" });
    addSubmenu(*menu, "folder", inner);
    moveTo(open(menu), "folder");
    ASSERT_TRUE(waitForDepth(2));
    HeldKey const option("Alt_L");
    click(*deepest(), "inside");
    ASSERT_TRUE(waitFor([&] { return event.has_value(); }));
    EXPECT_EQ(depthInAction, 0);
    EXPECT_EQ(sender, "inside");
    EXPECT_EQ(event->type, EventType::leftMouseUp);
    EXPECT_EQ(event->flags, modifier::option);
    EXPECT_FALSE(events_.currentEvent());
}

TEST_F(MenuPresenterTest, ReturnChoosesWithAKeyEvent)
{
    std::optional<Event> event;
    open(makeMenu({ "one", "two" }, [&](MenuItem& item) {
        EXPECT_EQ(item.title, "two");
        event = events_.currentEvent();
    }));
    pressKey("Down");
    pressKey("Down");
    pressKey("Return");
    ASSERT_TRUE(waitFor([&] { return event.has_value(); }));
    EXPECT_EQ(event->type, EventType::keyDown);
    EXPECT_EQ(event->flags, ModifierFlags());
    EXPECT_EQ(depth(), 0);
}

TEST_F(MenuPresenterTest, TheRootMenuLivesUntilTheActionHasReturned)
{
    std::weak_ptr<Menu> root;
    bool wasAlive = false;
    bool hasRun = false;
    {
        auto const inner = makeMenu({ "inside" }, [&](MenuItem& item) {
            serveEvents();
            wasAlive = !root.expired() && item.menu();
            hasRun = true;
        });
        auto const menu = makeMenu({});
        addSubmenu(*menu, "folder", inner);
        root = menu;
        open(menu);
    }
    pressKey("Down");
    pressKey("Right");
    ASSERT_TRUE(waitForDepth(2));
    pressKey("Return");
    ASSERT_TRUE(waitFor([&] { return hasRun; }));
    EXPECT_TRUE(wasAlive);
    EXPECT_TRUE(waitFor([&] { return root.expired(); }));
}

TEST_F(MenuPresenterTest, AMenuClosedWithoutAChoiceIsReleased)
{
    std::weak_ptr<Menu> root;
    {
        auto const menu = makeMenu({ "one" });
        root = menu;
        open(menu);
    }
    pressKey("Escape");
    EXPECT_TRUE(waitFor([&] { return root.expired(); }));
    EXPECT_EQ(depth(), 0);
}

TEST_F(MenuPresenterTest, CancellingClosesEveryMenuWithoutAChoice)
{
    bool hasRun = false;
    auto const inner = makeMenu({ "inside" }, [&](MenuItem&) { hasRun = true; });
    auto const menu = makeMenu({});
    addSubmenu(*menu, "folder", inner);
    open(menu);
    pressKey("Down");
    pressKey("Right");
    ASSERT_TRUE(waitForDepth(2));
    presenter_->cancelTracking();
    EXPECT_EQ(depth(), 0);
    presenter_->cancelTracking();
    QCoreApplication::processEvents();
    EXPECT_FALSE(hasRun);
}

TEST_F(MenuPresenterTest, AnOpenMenuClosesWhenAnotherPopsUp)
{
    auto const first = makeMenu({ "first" });
    auto const second = makeMenu({ "second" });
    open(first);
    auto const& view = open(second);
    EXPECT_EQ(depth(), 1);
    EXPECT_EQ(&view.menu(), second.get());
}

TEST_F(MenuPresenterTest, AnActionMayPopUpAMenu)
{
    auto const second = makeMenu({ "second" });
    open(makeMenu({ "first" }, [&](MenuItem&) { presenter_->popUp(second, nullptr); }));
    pressKey("Down");
    pressKey("Return");
    ASSERT_TRUE(waitFor([&] { return deepest() && &deepest()->menu() == second.get(); }));
    EXPECT_EQ(second->updates, 1);
}

TEST_F(MenuPresenterTest, AKeysActionMayCloseTheMenuAndServeEvents)
{
    std::weak_ptr<Menu> root;
    bool hasRun = false;
    {
        auto const menu = makeMenu({ "one" });
        root = menu;
        menu->onKey = [&](KeyEvent const& event, std::function<bool()> const& platformsOwn) {
            if (event.charactersIgnoringModifiers != "i")
                return platformsOwn();
            presenter_->cancelTracking();
            // The views of the closed menu must outlive it, since this runs inside one of them.
            serveEvents();
            EXPECT_FALSE(root.expired());
            hasRun = true;
            return true;
        };
        open(menu);
    }
    pressKey("Down");
    pressKey("i");
    ASSERT_TRUE(waitFor([&] { return hasRun; }));
    EXPECT_TRUE(waitFor([&] { return root.expired(); }));
}

TEST_F(MenuPresenterTest, ADeletionThatIsDueWaitsForAKeysAction)
{
    std::weak_ptr<Menu> root;
    bool hasRun = false;
    // The view of this one is to be deleted while the other's handles its key.
    presenter_->popUp(makeMenu({ "earlier" }), nullptr);
    {
        auto const menu = makeMenu({ "one" });
        root = menu;
        menu->onKey = [&](KeyEvent const&, std::function<bool()> const&) {
            presenter_->cancelTracking();
            serveEvents();
            EXPECT_FALSE(root.expired());
            hasRun = true;
            return true;
        };
        presenter_->popUp(menu, nullptr);
    }
    QKeyEvent press(QEvent::KeyPress, Qt::Key_I, Qt::NoModifier, QStringLiteral("i"));
    QCoreApplication::sendEvent(deepest(), &press);
    EXPECT_TRUE(hasRun);
    EXPECT_TRUE(waitFor([&] { return root.expired(); }));
}

TEST_F(MenuPresenterTest, AnEntryThatOpensAMenuHasAnArrow)
{
    auto const menu = makeMenu({ "one" });
    addSubmenu(*menu, "folder", makeMenu({}));
    auto& view = open(menu);
    auto const hasDrawingAtItsEnd = [&view](std::string const& title) {
        auto place = view.actionGeometry(&entry(view, title)).adjusted(0, 4, -4, -4);
        place.setLeft(place.right() - 12);
        auto const image = view.grab(place).toImage();
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixel(x, y) != image.pixel(0, 0))
                    return true;
            }
        }
        return false;
    };
    EXPECT_FALSE(hasDrawingAtItsEnd("one"));
    EXPECT_TRUE(hasDrawingAtItsEnd("folder"));
}

TEST_F(MenuPresenterTest, AKeysActionMayPopUpAnotherMenu)
{
    auto const second = makeMenu({ "second" });
    auto const menu = makeMenu({ "one" });
    menu->onKey = [&](KeyEvent const&, std::function<bool()> const&) {
        presenter_->popUp(second, nullptr);
        return true;
    };
    open(menu);
    pressKey("i");
    ASSERT_TRUE(waitFor([&] { return deepest() && &deepest()->menu() == second.get(); }));
}

TEST_F(MenuPresenterTest, AMenuThatIsRefilledWhileItIsOpenKeepsShowingWhatItOpenedWith)
{
    bool hasRun = false;
    auto const menu = makeMenu({ "one", "two" }, [&](MenuItem& item) {
        EXPECT_EQ(item.title, "one");
        hasRun = true;
    });
    auto const& view = open(menu);
    pressKey("Down");
    ASSERT_TRUE(waitForHighlight(view, "one"));
    menu->removeAllItems();
    menu->addItem(MenuItem::make("other"));
    EXPECT_EQ(view.actions().size(), 2);
    pressKey("Return");
    EXPECT_TRUE(waitFor([&] { return hasRun; }));
}

TEST_F(MenuPresenterTest, HighlightChangesAreToldAndItsEndToo)
{
    auto const menu = makeMenu({ "one", "two" });
    auto const& view = open(menu);
    EXPECT_THAT(menu->highlights, IsEmpty());
    moveTo(view, "one");
    ASSERT_TRUE(waitForHighlight(view, "one"));
    moveTo(view, "two");
    ASSERT_TRUE(waitForHighlight(view, "two"));
    parkPointer();
    ASSERT_TRUE(waitForHighlight(view, ""));
    EXPECT_THAT(menu->highlights, ElementsAre("one", "two", "-"));
    pressKey("Down");
    ASSERT_TRUE(waitFor([&] { return menu->highlights.size() == 4; }));
    presenter_->cancelTracking();
    EXPECT_EQ(menu->highlights.back(), "-");
}

TEST_F(MenuPresenterTest, AnEntryWithoutActionOnlyClosesTheMenu)
{
    open(makeMenu({ "one" }));
    pressKey("Down");
    pressKey("Return");
    EXPECT_TRUE(waitForDepth(0));
}

TEST_F(MenuPresenterTest, ADisabledEntryCannotBeChosen)
{
    bool hasRun = false;
    auto const menu = makeMenu({ "one", "two" }, [&](MenuItem&) { hasRun = true; });
    menu->items()[0]->isEnabled = false;
    auto const& view = open(menu);
    moveTo(view, "two");
    ASSERT_TRUE(waitForHighlight(view, "two"));
    moveTo(view, "one");
    ASSERT_TRUE(waitFor([&] { return highlighted(&view) != "two"; }));
    xdotool("click 1");
    parkPointer();
    QCoreApplication::processEvents();
    EXPECT_EQ(depth(), 1);
    EXPECT_FALSE(hasRun);
}

TEST_F(MenuPresenterTest, APressElsewhereClosesTheMenu)
{
    open(makeMenu({ "one" }));
    xdotool("mousemove 900 500 click 1");
    EXPECT_TRUE(waitForDepth(0));
}

TEST_F(MenuPresenterTest, ThousandsOfEntriesScrollToTheLast)
{
    std::vector<std::string> titles;
    for (int i = 0; i < 10'000; ++i)
        titles.push_back("entry " + std::to_string(i));
    auto const& view = open(makeMenu(titles));
    auto const screen = QGuiApplication::primaryScreen()->geometry();
    EXPECT_TRUE(screen.contains(view.geometry()));
    pressKey("Up");
    ASSERT_TRUE(waitForHighlight(view, "entry 9999"));
    std::function<QRect()> const last
        = [&] { return view.actionGeometry(&entry(view, "entry 9999")).translated(view.pos()); };
    EXPECT_TRUE(waitFor([&] { return screen.contains(last()); }))
        << last().x() << ' ' << last().y() << ' ' << last().width() << ' ' << last().height();
    pressKey("Down");
    EXPECT_TRUE(waitForHighlight(view, "entry 0"));
    std::function<QRect()> const first
        = [&] { return view.actionGeometry(&entry(view, "entry 0")).translated(view.pos()); };
    EXPECT_TRUE(waitFor([&] { return screen.contains(first()); }));
    for (auto const* key : { "End", "Home", "End" }) {
        pressKey(QLatin1String(key));
        auto const& seen = *key == 'E' ? last : first;
        EXPECT_TRUE(waitFor([&] { return screen.contains(seen()); })) << key;
    }
}

}
}
