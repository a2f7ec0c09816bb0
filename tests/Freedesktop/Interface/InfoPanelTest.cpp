#include "Freedesktop/Interface/InfoPanelFixture.h"

#include "Freedesktop/Interface/Bitmaps.h"
#include "Freedesktop/Interface/Icons.h"

#include <QAccessible>
#include <QApplication>
#include <QFontInfo>
#include <QMenu>
#include <QScreen>
#include <QScrollBar>
#include <QTimer>

#include <gmock/gmock.h>

#include <cmath>

namespace marrowick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(InfoPanelTest, TheTitleBarHasTheProgramsIconAndNoLargeOne)
{
    prepareWindowIcon();
    InfoPanelWindow const panel(handlers());
    auto const icon = panel.windowIcon();
    EXPECT_EQ(icon.availableSizes(), (QList<QSize> { { 16, 16 }, { 48, 48 } }));
    auto const programs = QApplication::windowIcon();
    for (QSize const size : { QSize(16, 16), QSize(48, 48) })
        EXPECT_EQ(icon.pixmap(size).toImage(), programs.pixmap(size).toImage()) << size.width();
}

TEST_F(InfoPanelTest, IsAFloatingToolWindowOfOneSizeInTheMiddleOfTheScreen)
{
    EXPECT_FALSE(panel_->isVisible());
    show();
    EXPECT_EQ(panel_->windowType(), Qt::Tool);
    EXPECT_TRUE(panel_->windowFlags() & Qt::WindowStaysOnTopHint);
    EXPECT_EQ(panel_->size(), QSize(340, 420));
    EXPECT_EQ(panel_->minimumSize(), panel_->maximumSize());
    auto const screen = QGuiApplication::primaryScreen()->availableGeometry();
    EXPECT_LT((panel_->geometry().center() - screen.center()).manhattanLength(), 4);
    EXPECT_EQ(panel_->windowTitle(), QStringLiteral("notes.txt Info"));
}

TEST_F(InfoPanelTest, EveryPartIsInsideAndNoneCoversAnother)
{
    show();
    auto const parts = panel_->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (auto const* part : parts) {
        EXPECT_TRUE(panel_->rect().adjusted(16, 16, -16, -16).contains(part->geometry()));
        for (auto const* other : parts)
            EXPECT_TRUE(part == other || !part->geometry().intersects(other->geometry()));
    }
    EXPECT_EQ(icon().size(), QSize(96, 96));
    EXPECT_EQ(preview().height(), 140);
    EXPECT_EQ(preview().width(), 308);
    EXPECT_EQ(name().width(), 308);
    EXPECT_LT(icon().y(), name().y());
    EXPECT_LT(name().y(), detail().y());
    EXPECT_LT(detail().y(), path().y());
    EXPECT_LT(path().y(), preview().y());
    int x = 0;
    std::vector<QString> titles;
    for (auto const* button : buttons()) {
        EXPECT_GT(button->y(), preview().geometry().bottom());
        EXPECT_GT(button->x(), x);
        EXPECT_GT(button->width(), button->fontMetrics().horizontalAdvance(button->text()) + 4);
        x = button->x();
        titles.push_back(button->text());
    }
    EXPECT_THAT(titles, ElementsAre("Trash", "Reveal", "Get Info", "Dismiss"));
}

TEST_F(InfoPanelTest, TextsHaveTheirSizes)
{
    EXPECT_GE(QFontInfo(name().font()).pixelSize(), 15);
    EXPECT_TRUE(name().font().bold());
    EXPECT_GE(QFontInfo(detail().font()).pixelSize(), 11);
    EXPECT_GE(QFontInfo(path().font()).pixelSize(), 10);
    EXPECT_GE(QFontInfo(preview().font()).pixelSize(), 10);
    EXPECT_TRUE(QFontInfo(preview().font()).fixedPitch());
}

TEST_F(InfoPanelTest, WithALargeFontTheWindowGrowsUntilEverythingFits)
{
    auto const before = QApplication::font();
    auto large = before;
    large.setPixelSize(28);
    QApplication::setFont(large);
    panel_ = std::make_unique<InfoPanelWindow>(handlers());
    panel_->setName("notes.txt");
    panel_->setPreview("text");
    show();
    EXPECT_GT(panel_->width(), 340);
    EXPECT_GT(panel_->height(), 420);
    EXPECT_GE(QFontInfo(name().font()).pixelSize(), 30);
    for (auto const* button : buttons())
        EXPECT_GT(button->width(), button->fontMetrics().horizontalAdvance(button->text()));
    QApplication::setFont(before);
}

TEST_F(InfoPanelTest, EachButtonHasItsKeysWhereverTheFocusIs)
{
    show();
    for (auto* const focus : { static_cast<QWidget*>(nullptr), static_cast<QWidget*>(&preview()),
             static_cast<QWidget*>(&path()), static_cast<QWidget*>(&icon()), static_cast<QWidget*>(buttons().at(2)) }) {
        if (focus)
            focus->setFocus();
        for (auto const& [key, title] : { std::pair { "Delete", "Trash" }, { "BackSpace", "Trash" }, { "r", "Reveal" },
                 { "i", "Get Info" }, { "Escape", "Dismiss" } }) {
            EXPECT_THAT(pressesOf(key), ElementsAre(title)) << key;
        }
        for (auto const* other : { "Shift+r", "Control+r", "Alt+i", "Super+r", "Shift+Delete", "x", "t", "d" })
            EXPECT_THAT(pressesOf(other), IsEmpty()) << other;
    }
}

TEST_F(InfoPanelTest, ReturnPressesNothingOfItself)
{
    show();
    EXPECT_THAT(pressesOf("Return"), IsEmpty());
    EXPECT_THAT(pressesOf("space"), IsEmpty());
    preview().setFocus();
    EXPECT_THAT(pressesOf("Return"), IsEmpty());
}

TEST_F(InfoPanelTest, AKeyThatIsHeldDownActsOnce)
{
    show();
    {
        HeldKey const held(QStringLiteral("i"));
        ASSERT_TRUE(waitForPress("Get Info"));
        // A key that nobody cares for does repeat, so there is a repetition to be seen.
        QElapsedTimer timer;
        timer.start();
        waitFor([&] { return timer.elapsed() > 900; });
    }
    EXPECT_THAT(pressed_, ElementsAre("Get Info"));
}

TEST_F(InfoPanelTest, ButtonsAreClicked)
{
    show();
    for (auto const* button : buttons()) {
        click(*button);
        EXPECT_TRUE(waitForPress(button->text().toStdString()));
    }
}

TEST_F(InfoPanelTest, ADoubleClickOnThePathCounts)
{
    show();
    click(path());
    EXPECT_THAT(pressesOf("x"), IsEmpty());
    QElapsedTimer timer;
    timer.start();
    waitFor([&] { return timer.elapsed() > QApplication::doubleClickInterval(); });
    click(path(), {}, 2);
    EXPECT_TRUE(waitForPress("path"));
}

TEST_F(InfoPanelTest, PressesOnTheIconAreCountedInOnePlace)
{
    show();
    click(icon(), {}, 3);
    ASSERT_TRUE(waitForPress("icon 3"));
    EXPECT_THAT(pressed_, ElementsAre("icon 1", "icon 2", "icon 3"));
    pressed_.clear();
    click(icon(), { 40, 0 });
    EXPECT_TRUE(waitForPress("icon 1"));
    QElapsedTimer timer;
    timer.start();
    waitFor([&] { return timer.elapsed() > QApplication::doubleClickInterval(); });
    pressed_.clear();
    click(icon(), { 40, 0 });
    EXPECT_TRUE(waitForPress("icon 1"));
}

TEST_F(InfoPanelTest, LongTextsAreElidedAndTheToolTipShowsTheWhole)
{
    auto const longName = "The beginning " + std::string(200, 'x') + " the end.txt";
    panel_->setName(longName);
    panel_->setPath("/somewhere/" + longName);
    show();
    EXPECT_TRUE(name().text().startsWith(QLatin1String("The beg")));
    EXPECT_TRUE(name().text().endsWith(QLatin1String("end.txt")));
    EXPECT_TRUE(path().text().startsWith(QChar(0x2026)));
    EXPECT_TRUE(path().text().endsWith(QLatin1String("end.txt")));
    for (auto* label : { &name(), static_cast<ElidedLabel*>(&path()) }) {
        EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), label->width());
        EXPECT_TRUE(toolTipOf(*label).contains(QString::fromStdString(longName)));
        EXPECT_TRUE(label->toolTip().isEmpty());
        EXPECT_TRUE(label->accessibleName().endsWith(QString::fromStdString(longName)));
    }
    panel_->setName("short");
    EXPECT_EQ(name().text(), QStringLiteral("short"));
    EXPECT_TRUE(waitFor([this] { return toolTipOf(name()).isEmpty(); }));
}

TEST_F(InfoPanelTest, APathThatIsALittleTooLongMovesTogetherInstead)
{
    show();
    auto const font = path().font();
    QString text = QStringLiteral("/home/");
    while (QFontMetrics(font).horizontalAdvance(text) <= path().width())
        text += u'n';
    panel_->setPath(text.toStdString());
    EXPECT_EQ(path().text(), text);
    EXPECT_EQ(path().font().letterSpacingType(), QFont::PercentageSpacing);
    EXPECT_LT(path().font().letterSpacing(), 100);
    EXPECT_LE(path().fontMetrics().horizontalAdvance(text), path().width());
    panel_->setPath("/home");
    EXPECT_EQ(path().font().letterSpacing(), font.letterSpacing());
}

TEST_F(InfoPanelTest, TextsStandForThemselves)
{
    std::string const odd = "<b>a</b> & [*]\n\xff.txt";
    panel_->setName(odd);
    panel_->setDetail("a & b");
    show();
    auto const shown = QString::fromUtf8("<b>a</b> & [*]\u240a\ufffd.txt");
    EXPECT_EQ(name().text(), shown);
    EXPECT_EQ(name().textFormat(), Qt::PlainText);
    EXPECT_EQ(detail().text(), QStringLiteral("a & b"));
    EXPECT_EQ(panel_->windowHandle()->title(), shown + QStringLiteral(" Info"));
    panel_->setName("100%1 [*]");
    EXPECT_EQ(panel_->windowHandle()->title(), QStringLiteral("100%1 [*] Info"));
}

TEST_F(InfoPanelTest, ThePreviewIsHiddenWhereThereIsNone)
{
    std::string text;
    for (int line = 0; line < 100; ++line)
        text += "line " + std::to_string(line) + "\n";
    panel_->setPreview(text);
    show();
    EXPECT_TRUE(preview().isVisible());
    EXPECT_TRUE(preview().isReadOnly());
    EXPECT_TRUE(waitFor([&] { return preview().toPlainText().toStdString() == text; }));
    EXPECT_TRUE(preview().verticalScrollBar()->isVisible());
    EXPECT_EQ(preview().verticalScrollBar()->value(), 0);
    panel_->setPreview("");
    EXPECT_TRUE(preview().isVisible());
    EXPECT_EQ(preview().toPlainText(), QString());
    panel_->setPreview(std::nullopt);
    EXPECT_FALSE(preview().isVisible());
    EXPECT_EQ(panel_->size(), QSize(340, 420));
}

TEST_F(InfoPanelTest, ThePreviewIsReadByTheKeyboardAndNotChanged)
{
    show();
    preview().setFocus();
    xdotool(QStringLiteral("key z BackSpace Control+v Tab"));
    EXPECT_TRUE(waitFor([this] { return !preview().hasFocus(); }));
    EXPECT_EQ(preview().toPlainText(), QStringLiteral("one\ntwo\n"));
    preview().setFocus();
    xdotool(QStringLiteral("key Down"));
    EXPECT_TRUE(waitFor([this] { return preview().textCursor().blockNumber() == 1; }));
}

TEST_F(InfoPanelTest, TheIconIsShownAtTheRightPlaceWithItsOwnColours)
{
    QImage image(96, 48, QImage::Format_ARGB32);
    image.fill(QColor(255, 0, 0, 255));
    panel_->setIcon(bitmapFrom(image));
    show();
    auto const shown = icon().grab().toImage();
    EXPECT_EQ(shown.pixelColor(48, 48), QColor(Qt::red));
    EXPECT_EQ(shown.pixelColor(2, 26), QColor(Qt::red));
    EXPECT_NE(shown.pixelColor(48, 10), QColor(Qt::red));
    QImage large(400, 400, QImage::Format_ARGB32);
    large.fill(QColor(0, 0, 255, 128));
    panel_->setIcon(bitmapFrom(large));
    auto const mixed = icon().grab().toImage().pixelColor(1, 1);
    auto const ground = panel_->palette().color(QPalette::Window);
    EXPECT_NEAR(mixed.red(), ground.red() / 2, 3);
    EXPECT_GT(mixed.blue(), 200);
    panel_->setIcon({});
    EXPECT_EQ(icon().grab().toImage().pixelColor(48, 48), ground);
}

TEST_F(InfoPanelTest, ClosingHidesInEveryWay)
{
    show();
    panel_->close();
    EXPECT_FALSE(panel_->isVisible());
    show();
    EXPECT_TRUE(panel_->QWidget::close());
    EXPECT_FALSE(panel_->isVisible());
    show();
    EXPECT_THAT(pressesOf("Escape"), ElementsAre("Dismiss"));
}

TEST_F(InfoPanelTest, AnOpenMenuStaysOpenAndThePanelHasTheKeysOnceItIsClosed)
{
    QMenu menu;
    menu.addAction(QStringLiteral("an entry"));
    menu.popup({ 10, 10 });
    ASSERT_TRUE(waitFor([&] { return menu.windowHandle()->isExposed(); }));
    panel_->show();
    ASSERT_TRUE(waitFor([this] { return panel_->windowHandle()->isExposed(); }));
    xdotool(QStringLiteral("key Down"));
    EXPECT_TRUE(waitFor([&] { return menu.activeAction() != nullptr; }));
    EXPECT_TRUE(menu.isVisible());
    EXPECT_THAT(pressed_, IsEmpty());
    xdotool(QStringLiteral("key Escape"));
    EXPECT_TRUE(waitFor([&] { return !menu.isVisible() && panel_->isActiveWindow(); }));
    EXPECT_THAT(pressesOf("i"), ElementsAre("Get Info"));
}

TEST_F(InfoPanelTest, WhenItIsClosedBeforeTheMenuItDoesNotComeBackWithIt)
{
    QMenu menu;
    menu.addAction(QStringLiteral("an entry"));
    menu.popup({ 10, 10 });
    panel_->show();
    panel_->close();
    menu.close();
    bool isServed = false;
    QMetaObject::invokeMethod(
        panel_.get(), [&] { isServed = true; }, Qt::QueuedConnection);
    EXPECT_TRUE(waitFor([&] { return isServed; }));
    EXPECT_FALSE(panel_->isVisible());
}

double luminance(QColor const& colour)
{
    auto const part
        = [](double value) { return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4); };
    return 0.2126 * part(colour.redF()) + 0.7152 * part(colour.greenF()) + 0.0722 * part(colour.blueF());
}

double contrast(QColor const& a, QColor const& b)
{
    auto const [low, high] = std::minmax({ luminance(a), luminance(b) });
    return (high + 0.05) / (low + 0.05);
}

TEST_F(InfoPanelTest, FadedTextsStayReadableInLightAndDark)
{
    show();
    auto const before = QApplication::palette();
    for (auto const& [text, ground] : { std::pair { QColor(0x23, 0x26, 0x29), QColor(0xEF, 0xF0, 0xF1) },
             { QColor(0xFC, 0xFC, 0xFC), QColor(0x2A, 0x2E, 0x32) } }) {
        QPalette palette = before;
        palette.setColor(QPalette::WindowText, text);
        palette.setColor(QPalette::Window, ground);
        QApplication::setPalette(palette);
        auto const colourOf = [](QWidget const& label) { return label.palette().color(QPalette::WindowText); };
        EXPECT_TRUE(waitFor([&] { return colourOf(name()) == text; }));
        EXPECT_GE(contrast(colourOf(path()), ground), 4.5) << text.name().toStdString();
        EXPECT_GT(contrast(colourOf(detail()), ground), contrast(colourOf(path()), ground));
        EXPECT_GT(contrast(text, ground), contrast(colourOf(detail()), ground));
    }
    QApplication::setPalette(before);
}

TEST_F(InfoPanelTest, AccessibilityClientsReadAndPressEverything)
{
    show();
    auto const interfaceOf = [](QWidget& widget) { return QAccessible::queryAccessibleInterface(&widget); };
    EXPECT_EQ(interfaceOf(*panel_)->text(QAccessible::Name), QStringLiteral("notes.txt Info"));
    EXPECT_EQ(interfaceOf(name())->role(), QAccessible::StaticText);
    EXPECT_EQ(interfaceOf(name())->text(QAccessible::Name), QStringLiteral("notes.txt"));
    EXPECT_EQ(interfaceOf(detail())->text(QAccessible::Name), QString::fromUtf8("12 bytes • text"));
    EXPECT_EQ(interfaceOf(path())->role(), QAccessible::StaticText);
    EXPECT_EQ(interfaceOf(path())->text(QAccessible::Name), QStringLiteral("/home/somebody/notes.txt"));
    EXPECT_EQ(interfaceOf(icon())->role(), QAccessible::Graphic);
    EXPECT_EQ(interfaceOf(preview())->role(), QAccessible::EditableText);
    EXPECT_TRUE(interfaceOf(preview())->state().readOnly);
    for (auto* const button : buttons()) {
        EXPECT_EQ(interfaceOf(*button)->role(), QAccessible::Button);
        auto* const action = interfaceOf(*button)->actionInterface();
        EXPECT_EQ(interfaceOf(*button)->text(QAccessible::Name), button->text());
        EXPECT_EQ(action->keyBindingsForAction(QAccessibleActionInterface::pressAction()), button->keys());
        EXPECT_FALSE(button->keys().isEmpty());
        action->doAction(QAccessibleActionInterface::pressAction());
    }
    ASSERT_TRUE(waitForPress("Dismiss"));
    EXPECT_THAT(pressed_, ElementsAre("Trash", "Reveal", "Get Info", "Dismiss"));
    interfaceOf(icon())->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(pressed_.back(), "icon 2");
    interfaceOf(path())->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(pressed_.back(), "path");
}

TEST_F(InfoPanelTest, TheKeyboardReachesEverything)
{
    show();
    std::vector<QWidget*> reached;
    for (int step = 0; step < 8; ++step) {
        auto* const before = QApplication::focusWidget();
        xdotool(QStringLiteral("key Tab"));
        ASSERT_TRUE(waitFor([&] { return QApplication::focusWidget() != before; }));
        reached.push_back(QApplication::focusWidget());
    }
    for (auto* const widget :
        { static_cast<QWidget*>(&icon()), static_cast<QWidget*>(&path()), static_cast<QWidget*>(&preview()),
            static_cast<QWidget*>(buttons().at(0)), static_cast<QWidget*>(buttons().at(3)) })
        EXPECT_THAT(reached, testing::Contains(widget));
    icon().setFocus();
    EXPECT_THAT(pressesOf("Return"), ElementsAre("icon 2"));
    path().setFocus();
    EXPECT_THAT(pressesOf("space"), ElementsAre("path"));
}

}
}
