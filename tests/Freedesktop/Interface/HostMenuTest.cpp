#include "Freedesktop/Interface/HostMenu.h"

#include "Freedesktop/Interface/FreedesktopEvents.h"
#include "Freedesktop/Interface/SessionSupport.h"

#include <QCoreApplication>
#include <QPointer>

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <string>

namespace marrowick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> titles(QMenu const& menu)
{
    std::vector<std::string> texts;
    for (auto const* action : menu.actions())
        texts.push_back(action->isSeparator() ? "---" : action->text().toStdString());
    return texts;
}

/// What a host does before it shows the menu.
void aboutToShow(QMenu& menu)
{
    Q_EMIT menu.aboutToShow();
}

class CountingMenu : public Menu {
public:
    using Menu::Menu;
    void menuNeedsUpdate(Menu& menu) override
    {
        menu.removeAllItems();
        menu.addItem(MenuItem::make("Opening " + std::to_string(++openings)));
    }
    int openings = 0;
};

class HostMenuTest : public testing::Test {
protected:
    FreedesktopEvents events_;
    std::shared_ptr<DeliveryGate> gate_ = std::make_shared<DeliveryGate>();
    std::shared_ptr<Menu> menu_ = std::make_shared<Menu>("Marrowick");
};

TEST_F(HostMenuTest, HasTheMenusEntriesWithTheirKeysBehindThem)
{
    auto const action = [](MenuItem&) {};
    menu_->addItem(MenuItem::make("Preferences…", action, ","));
    menu_->addItem(MenuItem::make("This & That", action));
    menu_->addItem(MenuItem::makeSeparator());
    menu_->addItem(MenuItem::make("Quit", action, "q"));
    HostMenu host(events_, gate_, [&] { return menu_; });
    EXPECT_THAT(titles(host.exported()), ElementsAre("Preferences…\tSuper+,", "This && That", "---", "Quit\tSuper+Q"));
}

TEST_F(HostMenuTest, EntriesWithoutAnActionCannotBeChosen)
{
    menu_->addItem(MenuItem::make("With", [](MenuItem&) {}));
    menu_->addItem(MenuItem::make("Without"));
    HostMenu host(events_, gate_, [&] { return menu_; });
    auto const actions = host.exported().actions();
    EXPECT_TRUE(actions.at(0)->isEnabled());
    EXPECT_FALSE(actions.at(1)->isEnabled());
}

TEST_F(HostMenuTest, TheMenuSaysWhatIsEnabledWhereTheDesktopDoesNotDecide)
{
    menu_->autoenablesItems = false;
    menu_->addItem(MenuItem::make("Disabled", [](MenuItem&) {}));
    menu_->items().front()->isEnabled = false;
    HostMenu host(events_, gate_, [&] { return menu_; });
    EXPECT_FALSE(host.exported().actions().at(0)->isEnabled());
}

TEST_F(HostMenuTest, IsMadeOnceWhenItIsFirstNeeded)
{
    int made = 0;
    HostMenu host(events_, gate_, [&] {
        ++made;
        return menu_;
    });
    EXPECT_EQ(made, 0);
    aboutToShow(host.exported());
    EXPECT_EQ(made, 1);
}

TEST_F(HostMenuTest, FollowsTheMenuEachTimeItIsAboutToShow)
{
    auto const counting = std::make_shared<CountingMenu>("Marrowick");
    HostMenu host(events_, gate_, [&] { return counting; });
    auto& exported = host.exported();
    EXPECT_THAT(titles(exported), ElementsAre("Opening 1"));
    aboutToShow(exported);
    EXPECT_THAT(titles(exported), ElementsAre("Opening 2"));
}

TEST_F(HostMenuTest, EntriesThatStayKeepTheirPlaceAtTheHost)
{
    menu_->addItem(MenuItem::make("Entry"));
    HostMenu host(events_, gate_, [&] { return menu_; });
    QPointer<QAction> const before = host.exported().actions().at(0);
    aboutToShow(host.exported());
    ASSERT_TRUE(before);
    EXPECT_EQ(host.exported().actions().at(0), before.data());
}

TEST_F(HostMenuTest, NoMenuIsAMenuWithoutEntries)
{
    HostMenu host(events_, gate_, [] { return nullptr; });
    EXPECT_THAT(titles(host.exported()), IsEmpty());
}

TEST_F(HostMenuTest, ChosenActionRunsLaterAndHoldsItsMenu)
{
    std::optional<Event> event;
    std::string sender;
    menu_->addItem(MenuItem::make("Entry", [&](MenuItem& item) {
        event = events_.currentEvent();
        sender = item.title;
        EXPECT_TRUE(item.menu());
    }));
    auto host = std::make_unique<HostMenu>(events_, gate_, [menu = std::move(menu_)] { return menu; });
    host->exported().actions().at(0)->trigger();
    EXPECT_FALSE(event);
    host.reset();
    EXPECT_TRUE(waitFor([&] { return event.has_value(); }));
    EXPECT_EQ(event->type, EventType::applicationDefined);
    EXPECT_EQ(sender, "Entry");
    EXPECT_FALSE(events_.currentEvent());
}

TEST_F(HostMenuTest, AChoiceWhileTheGateIsClosedIsLostAndShowsWhy)
{
    int chosen = 0;
    int shown = 0;
    menu_->addItem(MenuItem::make("Quit", [&](MenuItem&) { ++chosen; }));
    HostMenu host(events_, gate_, [&] { return menu_; });
    auto* const action = host.exported().actions().at(0);
    {
        DeliveryGate::Closure const closure(*gate_, [&] { ++shown; });
        action->trigger();
        EXPECT_EQ(shown, 1);
    }
    action->trigger();
    EXPECT_TRUE(waitFor([&] { return chosen > 0; }));
    EXPECT_EQ(chosen, 1);
    EXPECT_EQ(shown, 1);
}

TEST_F(HostMenuTest, AChoiceMadeJustBeforeTheGateClosesComesAfterwards)
{
    int chosen = 0;
    menu_->addItem(MenuItem::make("Quit", [&](MenuItem&) { ++chosen; }));
    HostMenu host(events_, gate_, [&] { return menu_; });
    auto* const action = host.exported().actions().at(0);
    action->trigger();
    {
        DeliveryGate::Closure const closure(*gate_);
        QCoreApplication::processEvents();
        EXPECT_EQ(chosen, 0);
    }
    EXPECT_TRUE(waitFor([&] { return chosen == 1; }));
}

TEST_F(HostMenuTest, TheMenuIsNotAskedForItsEntriesWhileTheGateIsClosed)
{
    auto const counting = std::make_shared<CountingMenu>("");
    HostMenu host(events_, gate_, [&] { return counting; });
    auto& exported = host.exported();
    ASSERT_EQ(counting->openings, 1);
    {
        DeliveryGate::Closure const closure(*gate_);
        aboutToShow(exported);
        EXPECT_EQ(counting->openings, 1);
        EXPECT_THAT(titles(exported), ElementsAre("Opening 1"));
    }
    aboutToShow(exported);
    EXPECT_THAT(titles(exported), ElementsAre("Opening 2"));
}

}
}
