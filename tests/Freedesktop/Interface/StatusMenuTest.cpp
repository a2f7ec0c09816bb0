#include "Freedesktop/Interface/FreedesktopStatusBar.h"
#include "Freedesktop/Interface/FreedesktopStatusItem.h"
#include "Freedesktop/Interface/MenuSession.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace marrowick {
namespace {

/// An icon in a real status area that pops a menu up.
class StatusMenuTest : public MenuSession {
protected:
    ~StatusMenuTest() override
    {
        presenter_->cancelTracking();
        item_.reset();
    }

    QRect startTrayer(QString const& edge)
    {
        host_ = std::make_unique<TestProcess>(QStringLiteral("trayer"),
            QStringList { QStringLiteral("--edge"), edge, QStringLiteral("--widthtype"), QStringLiteral("request") });
        item_ = FreedesktopStatusBar(events_, gate_, log_).makeStatusItem(StatusBar::squareLength);
        item_->button()->setImage(Image::systemSymbol("arrowtriangle.down.square", "Marrowick"));
        item_->button()->setAction([this] {
            ++clicks_;
            presenter_->popUp(makeMenu({ "one", "two" }), item_.get());
        });
        item_->button()->sendActionOn(0x14);
        auto const& item = static_cast<FreedesktopStatusItem&>(*item_);
        EXPECT_TRUE(waitFor([&] { return item.iconGeometry().has_value(); }));
        return item.iconGeometry().value_or(QRect());
    }

    void clickUntilDepth(QRect const& icon, int wanted)
    {
        movePointer(icon.center());
        xdotool("click 1");
        EXPECT_TRUE(waitForDepth(wanted));
    }

    RecordingLog log_;
    std::unique_ptr<TestProcess> host_;
    std::unique_ptr<StatusItem> item_;
    int clicks_ = 0;
};

TEST_F(StatusMenuTest, TheMenuStandsBesideTheIconAtEachEdge)
{
    auto const screen = QGuiApplication::primaryScreen()->geometry();
    for (auto const* edge : { "top", "bottom", "left", "right" }) {
        clickUntilDepth(startTrayer(QLatin1String(edge)), 1);
        ASSERT_TRUE(deepest()) << edge;
        // The panel may have moved since it took the icon.
        auto const icon = static_cast<FreedesktopStatusItem&>(*item_).iconGeometry().value();
        auto const menu = deepest()->geometry();
        EXPECT_TRUE(screen.contains(menu)) << edge;
        EXPECT_FALSE(menu.intersects(icon)) << edge;
        auto const grown = menu.adjusted(-8, -8, 8, 8);
        EXPECT_TRUE(grown.intersects(icon)) << edge;
        presenter_->cancelTracking();
        item_.reset();
        host_.reset();
    }
}

TEST_F(StatusMenuTest, ASecondClickOnTheIconClosesTheMenuAndAThirdOpensItAgain)
{
    auto const icon = startTrayer("top");
    for (int round = 1; round <= 3; ++round) {
        clickUntilDepth(icon, 1);
        EXPECT_EQ(clicks_, round);
        clickUntilDepth(icon, 0);
        // A click that came through would open it again.
        xdotool("key F9");
        QCoreApplication::processEvents();
        EXPECT_EQ(clicks_, round);
        EXPECT_EQ(depth(), 0);
    }
}

TEST_F(StatusMenuTest, ASecondClickClosesTheSubmenusToo)
{
    auto const icon = startTrayer("top");
    item_->button()->setAction([this] {
        ++clicks_;
        auto const menu = makeMenu({});
        addSubmenu(*menu, "folder", makeMenu({ "inside" }));
        presenter_->popUp(menu, item_.get());
    });
    clickUntilDepth(icon, 1);
    pressKey("Down");
    pressKey("Right");
    ASSERT_TRUE(waitForDepth(2));
    clickUntilDepth(icon, 0);
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks_, 1);
}

TEST_F(StatusMenuTest, AClickElsewhereIsNoClickOnTheIcon)
{
    auto const icon = startTrayer("top");
    clickUntilDepth(icon, 1);
    xdotool("mousemove 900 500 click 1");
    ASSERT_TRUE(waitForDepth(0));
    clickUntilDepth(icon, 1);
    EXPECT_EQ(clicks_, 2);
}

}
}
