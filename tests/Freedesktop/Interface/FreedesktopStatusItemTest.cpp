#include "Freedesktop/Interface/FreedesktopStatusItem.h"

#include "Freedesktop/Interface/AlertUser.h"
#include "Freedesktop/Interface/FreedesktopAlerts.h"
#include "Freedesktop/Interface/FreedesktopEvents.h"
#include "Freedesktop/Interface/FreedesktopStatusBar.h"
#include "Freedesktop/Interface/SessionSupport.h"

#include <QAccessible>
#include <QApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QMenu>
#include <QScreen>

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>

namespace marrowick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::uint64_t bothButtons = 0x14;

bool operator==(Event const& a, Event const& b)
{
    return a.type == b.type && a.flags == b.flags;
}

MATCHER_P2(Click, type, flags, "")
{
    return arg == Event { type, flags };
}

auto leftClick(ModifierFlags flags = {})
{
    return Click(EventType::leftMouseUp, flags);
}

auto rightClick(ModifierFlags flags = {})
{
    return Click(EventType::rightMouseUp, flags);
}

QRect screenRect()
{
    return QGuiApplication::primaryScreen()->geometry();
}

QImage picture(QRect const& place)
{
    return QGuiApplication::primaryScreen()
        ->grabWindow(0, place.x(), place.y(), place.width(), place.height())
        .toImage();
}

/// The smallest rectangle that holds all pixels of `area` that differ from those of one of its columns.
QRect drawingIn(QRect const& area, int backgroundColumn)
{
    auto const image = picture(area);
    QRect drawing;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != image.pixel(backgroundColumn, y))
                drawing |= QRect(x, y, 1, 1);
        }
    }
    return drawing.translated(area.topLeft());
}

/// What `call` answers. It is sent over another connection than the program's, and events are served meanwhile.
QDBusMessage answerOf(QDBusMessage const& call)
{
    auto const bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("panel"));
    QDBusPendingCall const pending = bus.asyncCall(call);
    EXPECT_TRUE(waitFor([&] { return pending.isFinished(); }));
    EXPECT_EQ(pending.reply().type(), QDBusMessage::ReplyMessage) << pending.reply().errorMessage().toStdString();
    return pending.reply();
}

QVariant property(QString const& service, QString const& path, QString const& interface, QString const& name)
{
    auto get = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << interface << name;
    QDBusPendingReply<QDBusVariant> const reply = answerOf(get);
    return reply.value().variant();
}

/// The name on the bus under which the icon is registered with the session's watcher.
QString registeredItem()
{
    auto const watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
    auto const items = property(
        watcher, QStringLiteral("/StatusNotifierWatcher"), watcher, QStringLiteral("RegisteredStatusNotifierItems"))
                           .toStringList();
    return items.empty() ? QString() : items.first().section(u'/', 0, 0);
}

/// The number of the entry with `label` among the children of a menu's layout; -1 when there is none.
int childWithLabel(QDBusArgument const& layout, QString const& label)
{
    int found = -1;
    int id = 0;
    QVariantMap properties;
    layout.beginStructure();
    layout >> id >> properties;
    layout.beginArray();
    while (!layout.atEnd()) {
        QDBusVariant entry;
        layout >> entry;
        auto const child = entry.variant().value<QDBusArgument>();
        child.beginStructure();
        child >> id >> properties;
        if (properties.value(QStringLiteral("label")).toString() == label)
            found = id;
    }
    return found;
}

class FreedesktopStatusItemTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        std::filesystem::copy(DESKTOP_CONFIG, qgetenv("XDG_CONFIG_HOME").toStdString(),
            std::filesystem::copy_options::recursive | std::filesystem::copy_options::overwrite_existing);
    }

    ~FreedesktopStatusItemTest() override
    {
        item_.reset();
        host_.reset();
        // A test begins without a status area; parts of a panel end later than the panel.
        StatusAreaWatch const areas([](StatusArea) {});
        EXPECT_TRUE(waitFor([&] { return areas.area() == StatusArea {}; }));
        xdotool(QStringLiteral("mousemove 600 400"));
    }

    FreedesktopStatusItem& item() { return static_cast<FreedesktopStatusItem&>(*item_); }

    void makeItem()
    {
        item_ = FreedesktopStatusBar(events_, gate_, log_).makeStatusItem(StatusBar::squareLength);
        auto& button = *item_->button();
        button.setImage(Image::systemSymbol("arrowtriangle.down.square", "Marrowick"));
        button.setAction([this] {
            clicks_.push_back(events_.currentEvent().value());
            if (onClick_)
                onClick_();
        });
        button.sendActionOn(bothButtons);
    }

    void startTrayer(QString const& edge = QStringLiteral("top"))
    {
        host_ = std::make_unique<TestProcess>(QStringLiteral("trayer"),
            QStringList { QStringLiteral("--edge"), edge, QStringLiteral("--widthtype"), QStringLiteral("request") });
    }

    void startLxqtPanel()
    {
        host_ = std::make_unique<TestProcess>(QStringLiteral("lxqt-panel"));
        panel_ = QRect(0, screenRect().height() - 32, screenRect().width(), 32);
    }

    void startXfcePanel()
    {
        host_ = std::make_unique<TestProcess>(
            QStringLiteral("xfce4-panel"), QStringList { QStringLiteral("--disable-wm-check") });
        panel_ = QRect(0, 2, screenRect().width(), 24);
    }

    /// Where the embedded icon is, once it has been painted.
    QRect embeddedIcon()
    {
        EXPECT_TRUE(waitFor([&] {
            auto const place = item().iconGeometry();
            return place && isPainted(*place);
        }));
        return item().iconGeometry().value_or(QRect());
    }

    /// The same for the icon in a panel that draws it by itself.
    QRect iconInPanel()
    {
        QRect icon;
        EXPECT_TRUE(waitFor([&] {
            icon = drawingIn(panel_, panel_.width() / 2);
            return icon.width() >= 12 && icon.width() <= 32 && icon.height() >= 12;
        }));
        return icon;
    }

    static bool isPainted(QRect const& place)
    {
        auto const image = picture(place);
        std::set<QRgb> colours;
        for (int x = 0; x < image.width(); ++x)
            colours.insert(image.pixel(x, image.height() / 2));
        return colours.size() >= 3;
    }

    static void pointAt(QRect const& icon)
    {
        xdotool(QStringLiteral("mousemove %1 %2").arg(icon.center().x()).arg(icon.center().y()));
    }

    /// Clicks and waits until `count` clicks have come in all.
    void clickUntil(QString const& buttons, std::size_t count)
    {
        xdotool(buttons);
        EXPECT_TRUE(waitFor([&] { return clicks_.size() >= count; }));
    }

    void expectModifiersOfClicks()
    {
        struct Row {
            char const* key;
            ModifierFlags flags;
        };
        for (auto const& [key, flags] : { Row { "Shift_L", modifier::shift }, Row { "Super_L", modifier::command },
                 Row { "Alt_L", modifier::option }, Row { "Control_L", modifier::control } }) {
            clicks_.clear();
            HeldKey const held(QString::fromLatin1(key));
            clickUntil(QStringLiteral("click 1"), 1);
            EXPECT_THAT(clicks_, ElementsAre(leftClick(flags))) << key;
        }
        clicks_.clear();
        clickUntil(QStringLiteral("click 1"), 1);
        EXPECT_THAT(clicks_, ElementsAre(leftClick()));
    }

    FreedesktopEvents events_;
    std::shared_ptr<DeliveryGate> gate_ = std::make_shared<DeliveryGate>();
    RecordingLog log_;
    std::unique_ptr<TestProcess> host_;
    QRect panel_;
    std::unique_ptr<StatusItem> item_;
    std::vector<Event> clicks_;
    std::function<void()> onClick_;
};

TEST_F(FreedesktopStatusItemTest, WithoutAStatusAreaTheLogSaysSoOnce)
{
    makeItem();
    ASSERT_TRUE(waitFor([&] { return !log_.lines().empty(); }));
    EXPECT_EQ(item().iconGeometry(), std::nullopt);
    startTrayer();
    embeddedIcon();
    host_.reset();
    EXPECT_TRUE(waitFor([&] { return !item().iconGeometry(); }));
    EXPECT_THAT(log_.lines(), SizeIs(1));
    EXPECT_EQ(log_.lines()[0].rfind("Marrowick: ", 0), 0U);
}

TEST_F(FreedesktopStatusItemTest, StatusAreaThatIsThereIsUsedWithoutAWord)
{
    startTrayer();
    StatusAreaWatch const areas([](StatusArea) {});
    ASSERT_TRUE(waitFor([&] { return areas.area() && areas.area()->kind == StatusArea::Kind::embedding; }));
    makeItem();
    embeddedIcon();
    EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(FreedesktopStatusItemTest, TrayerGetsTheIconAgainEachTimeItStarts)
{
    makeItem();
    for (auto const* edge : { "top", "bottom", "left" }) {
        startTrayer(QLatin1String(edge));
        auto const icon = embeddedIcon();
        EXPECT_TRUE(screenRect().contains(icon)) << edge;
        EXPECT_GE(std::min(icon.width(), icon.height()), 16) << edge;
        pointAt(icon);
        clicks_.clear();
        clickUntil(QStringLiteral("click 1"), 1);
        host_.reset();
        EXPECT_TRUE(waitFor([&] { return !item().iconGeometry(); })) << edge;
    }
}

TEST_F(FreedesktopStatusItemTest, EmbeddedIconTellsButtonsAndModifiers)
{
    startTrayer();
    makeItem();
    pointAt(embeddedIcon());
    expectModifiersOfClicks();
    clicks_.clear();
    clickUntil(QStringLiteral("click 3"), 1);
    EXPECT_THAT(clicks_, ElementsAre(rightClick()));
    HeldKey const shift(QStringLiteral("Shift_L"));
    clickUntil(QStringLiteral("click 3"), 2);
    EXPECT_THAT(clicks_, ElementsAre(rightClick(), rightClick(modifier::shift)));
}

TEST_F(FreedesktopStatusItemTest, MiddleClickDoesNothing)
{
    startTrayer();
    makeItem();
    pointAt(embeddedIcon());
    clickUntil(QStringLiteral("click 2 click 1"), 1);
    EXPECT_THAT(clicks_, ElementsAre(leftClick()));
}

TEST_F(FreedesktopStatusItemTest, ButtonsOutsideTheMaskDoNothing)
{
    startTrayer();
    makeItem();
    pointAt(embeddedIcon());
    item_->button()->sendActionOn(std::uint64_t { 1 } << static_cast<unsigned>(EventType::rightMouseUp));
    clickUntil(QStringLiteral("click 1 click 3"), 1);
    EXPECT_THAT(clicks_, ElementsAre(rightClick()));
}

TEST_F(FreedesktopStatusItemTest, ClickIsTheCurrentEventOnlyWhileItsActionRuns)
{
    startTrayer();
    makeItem();
    pointAt(embeddedIcon());
    clickUntil(QStringLiteral("click 1"), 1);
    EXPECT_FALSE(events_.currentEvent());
}

TEST_F(FreedesktopStatusItemTest, SecondClickOnTheEmbeddedIconClosesTheMenuThatTheFirstOpened)
{
    startTrayer();
    makeItem();
    QMenu menu;
    menu.addAction(QStringLiteral("Entry"));
    onClick_ = [&] { menu.popup(item().iconGeometry()->bottomLeft()); };
    pointAt(embeddedIcon());
    clickUntil(QStringLiteral("click 1"), 1);
    ASSERT_TRUE(waitFor([&] { return menu.isVisible(); }));
    onClick_ = {};
    xdotool(QStringLiteral("click 1"));
    EXPECT_TRUE(waitFor([&] { return !menu.isVisible(); }));
    // The next that counts is the third one, so the second was not taken for a click of its own.
    xdotool(QStringLiteral("click 3"));
    EXPECT_TRUE(waitFor([&] { return !clicks_.empty() && clicks_.back().type == EventType::rightMouseUp; }));
    EXPECT_THAT(clicks_, ElementsAre(leftClick(), rightClick()));
}

TEST_F(FreedesktopStatusItemTest, ClicksWhileAnAlertIsUpAreLostAndShowIt)
{
    startTrayer();
    makeItem();
    auto const icon = embeddedIcon();
    FreedesktopAlerts alerts(gate_);
    // Twice, because the icon is held back by each alert anew.
    for (int round = 1; round <= 2; ++round) {
        AlertUser const user([&](AlertWindow& window) {
            int shown = 0;
            DeliveryGate::Closure const closure(*gate_, [&] { ++shown; });
            pointAt(icon);
            xdotool(QStringLiteral("click 1"));
            EXPECT_TRUE(waitFor([&] { return shown == 1; }));
            xdotool(QStringLiteral("click 3"));
            EXPECT_TRUE(waitFor([&] { return shown == 2; }));
            window.reject();
        });
        alerts.runModal({ AlertStyle::warning, "Question?", "", { "Yes", "No" } });
        EXPECT_THAT(clicks_, IsEmpty());
    }
    clickUntil(QStringLiteral("click 1"), 1);
    EXPECT_THAT(clicks_, ElementsAre(leftClick()));
}

TEST_F(FreedesktopStatusItemTest, AccessibilityClientsFindAButtonAndPressIt)
{
    startTrayer();
    makeItem();
    embeddedIcon();
    auto const windows = QApplication::topLevelWidgets();
    auto const found = std::find_if(windows.begin(), windows.end(),
        [](QWidget* widget) { return widget->isVisible() && widget->accessibleName() == QStringLiteral("Marrowick"); });
    ASSERT_NE(found, windows.end());
    auto* accessible = QAccessible::queryAccessibleInterface(*found);
    EXPECT_EQ(accessible->role(), QAccessible::Button);
    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(waitFor([&] { return !clicks_.empty(); }));
    EXPECT_THAT(clicks_, ElementsAre(Click(EventType::applicationDefined, ModifierFlags())));
}

TEST_F(FreedesktopStatusItemTest, EmbeddedIconIsSeenOnItsManagersBackground)
{
    startTrayer();
    makeItem();
    embeddedIcon();
    // The corner of the symbol's square is round: the panel's colour is seen through, once the panel has painted it.
    QRgb background = 0;
    EXPECT_TRUE(waitFor([&] {
        background = picture(embeddedIcon()).pixel(0, 0);
        return background != qRgb(0, 0, 0);
    }));
    auto const image = picture(embeddedIcon());
    int strongest = 0;
    for (int x = 0; x < image.width(); ++x)
        strongest = std::max(strongest, std::abs(qGray(image.pixel(x, image.height() / 2)) - qGray(background)));
    EXPECT_GT(strongest, 80);
}

TEST_F(FreedesktopStatusItemTest, LxqtPanelTellsModifiersOfLeftClicks)
{
    makeItem();
    startLxqtPanel();
    pointAt(iconInPanel());
    EXPECT_EQ(item().iconGeometry(), std::nullopt);
    expectModifiersOfClicks();
    clicks_.clear();
    clickUntil(QStringLiteral("click 2 click 1"), 1);
    EXPECT_THAT(clicks_, ElementsAre(leftClick()));
}

TEST_F(FreedesktopStatusItemTest, XfcePanelTellsModifiersOfLeftClicks)
{
    makeItem();
    startXfcePanel();
    pointAt(iconInPanel());
    EXPECT_EQ(item().iconGeometry(), std::nullopt);
    expectModifiersOfClicks();
}

TEST_F(FreedesktopStatusItemTest, PanelsShowTheHostMenuAndChooseFromIt)
{
    makeItem();
    std::vector<Event> choices;
    item_->setHostMenu([&] {
        auto menu = std::make_shared<Menu>("Marrowick");
        menu->addItem(MenuItem::make("Choose Me", [&](MenuItem&) { choices.push_back(*events_.currentEvent()); }));
        return menu;
    });
    startLxqtPanel();
    iconInPanel();
    auto const service = registeredItem();
    auto const itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
    auto const itemPath = QStringLiteral("/StatusNotifierItem");
    EXPECT_EQ(property(service, itemPath, itemInterface, QStringLiteral("ItemIsMenu")).toBool(), false);
    EXPECT_EQ(property(service, itemPath, itemInterface, QStringLiteral("Category")).toString().toStdString(),
        "ApplicationStatus");
    auto const menuPath
        = property(service, itemPath, itemInterface, QStringLiteral("Menu")).value<QDBusObjectPath>().path();
    auto const menuInterface = QStringLiteral("com.canonical.dbusmenu");

    auto getLayout = QDBusMessage::createMethodCall(service, menuPath, menuInterface, QStringLiteral("GetLayout"));
    getLayout << 0 << -1 << QStringList {};
    auto const root = answerOf(getLayout).arguments().at(1).value<QDBusArgument>();
    int const chosen = childWithLabel(root, QStringLiteral("Choose Me"));
    ASSERT_NE(chosen, -1);

    auto choose = QDBusMessage::createMethodCall(service, menuPath, menuInterface, QStringLiteral("Event"));
    choose << chosen << QStringLiteral("clicked") << QVariant::fromValue(QDBusVariant(QString())) << 0U;
    answerOf(choose);
    EXPECT_TRUE(waitFor([&] { return !choices.empty(); }));
    EXPECT_THAT(choices, ElementsAre(Click(EventType::applicationDefined, ModifierFlags())));
    EXPECT_THAT(clicks_, IsEmpty());
}

TEST_F(FreedesktopStatusItemTest, KilledPanelsGetTheIconAgainWhenTheyRestart)
{
    makeItem();
    for (int start = 0; start < 2; ++start) {
        startLxqtPanel();
        pointAt(iconInPanel());
        clicks_.clear();
        clickUntil(QStringLiteral("click 1"), 1);
        host_->kill();
    }
}

TEST_F(FreedesktopStatusItemTest, IconMovesToAStatusAreaOfTheOtherKind)
{
    makeItem();
    startTrayer();
    embeddedIcon();
    host_.reset();
    startLxqtPanel();
    pointAt(iconInPanel());
    clickUntil(QStringLiteral("click 1"), 1);
    EXPECT_EQ(item().iconGeometry(), std::nullopt);
    host_.reset();
    startTrayer();
    pointAt(embeddedIcon());
    clickUntil(QStringLiteral("click 1"), 2);
    EXPECT_THAT(clicks_, SizeIs(2));
}

}
}
