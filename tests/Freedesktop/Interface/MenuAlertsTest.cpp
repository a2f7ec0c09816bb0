#include "Freedesktop/Interface/AlertUser.h"
#include "Freedesktop/Interface/FreedesktopAlerts.h"
#include "Freedesktop/Interface/MenuSession.h"

#include <QApplication>
#include <QPointer>

namespace marrowick {
namespace {

using testing::IsEmpty;

/// Alerts that come from a menu.
class MenuAlertsTest : public MenuSession {
protected:
    std::size_t ask(std::function<void(AlertWindow&)> acts)
    {
        AlertUser const user(std::move(acts));
        return alerts_.runModal({ AlertStyle::warning, "Question?", "", { "Yes", "Perhaps", "No" } });
    }

    static void serveEvents()
    {
        for (int i = 0; i < 20; ++i) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    FreedesktopAlerts alerts_ { gate_ };
};

TEST_F(MenuAlertsTest, AKeysAlertClosesTheMenusAndHasTheKeyboard)
{
    for (auto const& [key, expected] : { std::pair { "Return", 0U }, std::pair { "Escape", 2U } }) {
        std::optional<std::size_t> answer;
        auto const submenu = makeMenu({ "inside" });
        submenu->onKey = [&, key = key](KeyEvent const& event, auto const& platformsOwn) {
            if (event.charactersIgnoringModifiers != "r")
                return platformsOwn();
            EXPECT_EQ(depth(), 2);
            answer = ask([&](AlertWindow&) {
                EXPECT_EQ(depth(), 0);
                EXPECT_EQ(QWidget::keyboardGrabber(), nullptr);
                pressKey(key);
            });
            return true;
        };
        auto const menu = makeMenu({});
        addSubmenu(*menu, "folder", submenu);
        open(menu);
        pressKey("Down");
        pressKey("Right");
        ASSERT_TRUE(waitForDepth(2));
        ASSERT_TRUE(waitForHighlight(*deepest(), "inside"));
        pressKey("r");
        ASSERT_TRUE(waitFor([&] { return answer.has_value(); })) << key;
        EXPECT_EQ(*answer, expected);
        EXPECT_EQ(depth(), 0);
    }
}

TEST_F(MenuAlertsTest, ViewsLiveAsLongAsTheAlertThatTheirKeyOpenedAndNoLonger)
{
    QPointer<MenuView> view;
    bool wasAlive = false;
    bool isAnswered = false;
    auto const menu = makeMenu({ "one" });
    menu->onKey = [&](KeyEvent const&, auto const&) {
        ask([&](AlertWindow&) {
            serveEvents();
            wasAlive = !view.isNull();
            pressKey("Escape");
        });
        wasAlive = wasAlive && !view.isNull();
        isAnswered = true;
        return true;
    };
    view = &open(menu);
    pressKey("x");
    ASSERT_TRUE(waitFor([&] { return isAnswered; }));
    EXPECT_TRUE(wasAlive);
    EXPECT_TRUE(waitFor([&] { return view.isNull(); }));
    auto const next = makeMenu({ "two" });
    open(next);
    EXPECT_TRUE(waitForDepth(1));
}

TEST_F(MenuAlertsTest, ViewsLiveAsLongAsTheAlertOfAChosenEntryAndNoLonger)
{
    QPointer<MenuView> view;
    bool wasAlive = false;
    bool isAnswered = false;
    auto const menu = makeMenu({ "one" }, [&](MenuItem&) {
        ask([&](AlertWindow&) {
            serveEvents();
            wasAlive = !view.isNull();
            pressKey("Escape");
        });
        isAnswered = true;
    });
    view = &open(menu);
    // The action comes before the deletion, which is asked for when the handler ends.
    click(*view, "one");
    ASSERT_TRUE(waitFor([&] { return isAnswered; }));
    EXPECT_TRUE(wasAlive);
    EXPECT_TRUE(waitFor([&] { return view.isNull(); }));
}

TEST_F(MenuAlertsTest, AMenuThatIsOpenWhenAnAlertComesFromElsewhereCloses)
{
    auto const menu = makeMenu({ "one" });
    auto& view = open(menu);
    QPointer<MenuView> const watched(&view);
    EXPECT_EQ(ask([&](AlertWindow&) {
        EXPECT_EQ(depth(), 0);
        pressKey("Return");
    }),
        0U);
    EXPECT_TRUE(waitFor([&] { return watched.isNull(); }));
}

TEST_F(MenuAlertsTest, AnActionThatIsDueWhenAnAlertComesUpRunsAfterIt)
{
    int ran = 0;
    auto const menu = makeMenu({ "one" }, [&](MenuItem&) { ++ran; });
    auto& view = open(menu);
    view.activate(entry(view, "one"));
    ask([&](AlertWindow&) {
        serveEvents();
        EXPECT_EQ(ran, 0);
        pressKey("Return");
    });
    EXPECT_EQ(ran, 0);
    EXPECT_TRUE(waitFor([&] { return ran == 1; }));
}

}
}
