#include "Freedesktop/Interface/MenuKeys.h"

#include "Freedesktop/Interface/MenuSession.h"

#include <QCoreApplication>
#include <QProcess>

namespace marrowick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr ModifierFlags none;

struct PressRow {
    int key;
    Qt::KeyboardModifiers modifiers;
    char const* text;
    char const* characters;
};

TEST(KeyEventFromTest, CharactersAreThoseOfTheKeyWithoutModifiersButShift)
{
    PressRow const rows[] = {
        { Qt::Key_R, Qt::NoModifier, "r", "r" },
        { Qt::Key_R, Qt::ShiftModifier, "R", "R" },
        { Qt::Key_R, Qt::ControlModifier, "\x12", "r" },
        { Qt::Key_R, Qt::MetaModifier | Qt::AltModifier, "", "r" },
        // Caps Lock
        { Qt::Key_R, Qt::NoModifier, "R", "r" },
        { Qt::Key_Comma, Qt::MetaModifier, ",", "," },
        { Qt::Key_Exclam, Qt::ShiftModifier, "!", "!" },
        { Qt::Key_Space, Qt::NoModifier, " ", " " },
        { Qt::Key_7, Qt::KeypadModifier, "7", "7" },
        { Qt::Key_Home, Qt::KeypadModifier, "", "" },
        { Qt::Key_Enter, Qt::KeypadModifier, "\r", "\r" },
        { Qt::Key_Return, Qt::NoModifier, "\r", "\r" },
        { Qt::Key_Delete, Qt::NoModifier, "\x7f", "\x7f" },
        { Qt::Key_Delete, Qt::KeypadModifier, "\x7f", "\x7f" },
        { Qt::Key_Backspace, Qt::NoModifier, "\b", "\b" },
        { Qt::Key_Tab, Qt::NoModifier, "\t", "\t" },
        { Qt::Key_Backtab, Qt::ShiftModifier, "", "\t" },
        { Qt::Key_Escape, Qt::NoModifier, "\x1b", "\x1b" },
        { Qt::Key_Up, Qt::NoModifier, "", "" },
        { Qt::Key_F1, Qt::NoModifier, "", "" },
        { Qt::Key_Dead_Acute, Qt::NoModifier, "", "" },
        { Qt::Key_unknown, Qt::NoModifier, "", "" },
        { Qt::Key_Odiaeresis, Qt::NoModifier, "ö", "ö" },
        { 0x416, Qt::NoModifier, "ж", "ж" },
        { 0x416, Qt::ShiftModifier, "Ж", "Ж" },
        { 0, Qt::NoModifier, "語", "語" },
        { 0, Qt::NoModifier, "\x12", "" },
    };
    for (auto const& row : rows) {
        QKeyEvent const event(QEvent::KeyPress, row.key, row.modifiers, QString::fromUtf8(row.text));
        EXPECT_EQ(keyEventFrom(event).charactersIgnoringModifiers, row.characters)
            << "key " << row.key << " text " << row.text;
    }
}

class MenuKeysTest : public MenuSession { };

/// A keyboard layout in place of the usual one.
class Layout {
public:
    explicit Layout(char const* name) { QProcess::execute(QStringLiteral("setxkbmap"), { QLatin1String(name) }); }
    ~Layout() { QProcess::execute(QStringLiteral("setxkbmap"), { QStringLiteral("us") }); }
    Layout(Layout const&) = delete;
    Layout& operator=(Layout const&) = delete;
};

struct KeyRow {
    char const* keys;
    ModifierFlags flags;
    char const* characters;
};

TEST_F(MenuKeysTest, AMenuIsHandedEachKeyWithItsModifiers)
{
    KeyRow const rows[] = {
        { "super+alt+x", modifier::command | modifier::option, "x" },
        { "super+alt+shift+x", modifier::command | modifier::option | modifier::shift, "X" },
        { "super+alt+ctrl+x", modifier::command | modifier::option | modifier::control, "x" },
        { "super+alt+ctrl+shift+x", modifier::command | modifier::option | modifier::control | modifier::shift, "X" },
        { "r", none, "r" },
        { "i", none, "i" },
        { "p", none, "p" },
        { "Delete", none, "\x7f" },
        { "BackSpace", none, "\b" },
        { "g", none, "g" },
        { "q", none, "q" },
        { "Tab", none, "\t" },
        { "x", none, "x" },
        { "super+x", modifier::command, "x" },
        { "super+comma", modifier::command, "," },
        { "super+Up", modifier::command, "" },
        { "shift+r", modifier::shift, "R" },
        { "alt+r", modifier::option, "r" },
        { "ctrl+r", modifier::control, "r" },
        { "super+shift+r", modifier::command | modifier::shift, "R" },
        { "super+ctrl+r", modifier::command | modifier::control, "r" },
        { "alt+shift+r", modifier::option | modifier::shift, "R" },
        { "Return", none, "\r" },
        { "Escape", none, "\x1b" },
        { "Down", none, "" },
    };
    auto const menu = makeMenu({ "alpha", "beta" });
    std::optional<Event> current;
    menu->onKey = [&](KeyEvent const&, std::function<bool()> const&) {
        current = events_.currentEvent();
        return true;
    };
    auto const& view = open(menu);
    for (auto const& row : rows) {
        menu->keys.clear();
        current.reset();
        pressKey(QLatin1String(row.keys));
        ASSERT_TRUE(waitFor([&] { return !menu->keys.empty(); })) << row.keys;
        ASSERT_EQ(menu->keys.size(), 1U) << row.keys;
        EXPECT_EQ(menu->keys[0].type, EventType::keyDown) << row.keys;
        EXPECT_EQ(menu->keys[0].flags, row.flags) << row.keys;
        EXPECT_EQ(menu->keys[0].charactersIgnoringModifiers, row.characters) << row.keys;
        ASSERT_TRUE(current) << row.keys;
        EXPECT_EQ(current->type, EventType::keyDown) << row.keys;
        EXPECT_EQ(current->flags, row.flags) << row.keys;
    }
    // The menu kept each key to itself, and the toolkit did nothing with it.
    EXPECT_EQ(depth(), 1);
    EXPECT_EQ(highlighted(&view), "");
    EXPECT_FALSE(events_.currentEvent());
}

TEST_F(MenuKeysTest, TheToolkitSeesAKeyWhenTheMenuAsksIt)
{
    auto const menu = makeMenu({ "alpha", "beta" });
    std::vector<bool> answers;
    menu->onKey = [&](KeyEvent const&, std::function<bool()> const& platformsOwn) {
        answers.push_back(platformsOwn());
        return answers.back();
    };
    auto const& view = open(menu);
    pressKey("Down");
    ASSERT_TRUE(waitForHighlight(view, "alpha"));
    pressKey("End");
    ASSERT_TRUE(waitForHighlight(view, "beta"));
    pressKey("Home");
    ASSERT_TRUE(waitForHighlight(view, "alpha"));
    pressKey("F9");
    ASSERT_TRUE(waitFor([&] { return answers.size() == 4; }));
    EXPECT_THAT(answers, ElementsAre(true, true, true, false));
    pressKey("Escape");
    EXPECT_TRUE(waitForDepth(0));
}

TEST_F(MenuKeysTest, ModifierKeysAloneDoNothing)
{
    auto const menu = makeMenu({ "alpha" });
    open(menu);
    for (auto const* key :
        { "Alt_L", "Super_L", "Shift_L", "Control_L", "Caps_Lock", "Caps_Lock", "Num_Lock", "Num_Lock" })
        pressKey(QLatin1String(key));
    pressKey("x");
    ASSERT_TRUE(waitFor([&] { return !menu->keys.empty(); }));
    EXPECT_EQ(menu->keys.size(), 1U);
    EXPECT_EQ(depth(), 1);
}

TEST_F(MenuKeysTest, TheDeepestMenuWithAHighlightGetsTheKey)
{
    auto const inner = makeMenu({ "inside" });
    auto const menu = makeMenu({});
    addSubmenu(*menu, "folder", inner);
    moveTo(open(menu), "folder");
    ASSERT_TRUE(waitForDepth(2));
    pressKey("x");
    ASSERT_TRUE(waitFor([&] { return menu->keys.size() == 1; }));
    EXPECT_THAT(inner->keys, IsEmpty());
    EXPECT_EQ(menu->highlights.back(), "folder");

    moveTo(*deepest(), "inside");
    ASSERT_TRUE(waitForHighlight(*deepest(), "inside"));
    pressKey("x");
    ASSERT_TRUE(waitFor([&] { return inner->keys.size() == 1; }));
    EXPECT_EQ(inner->highlights.back(), "inside");
    EXPECT_EQ(menu->keys.size(), 1U);
}

TEST_F(MenuKeysTest, AMenuWithoutAHighlightGetsTheKeyToo)
{
    auto const menu = makeMenu({ "alpha" });
    open(menu);
    pressKey("r");
    ASSERT_TRUE(waitFor([&] { return menu->keys.size() == 1; }));
    EXPECT_THAT(menu->highlights, IsEmpty());
}

TEST_F(MenuKeysTest, ATypedLetterGoesToTheNextTitleThatStartsWithIt)
{
    Layout const german("de");
    auto const menu = makeMenu({ "alpha", "Beta", "beta 2", "gamma", "Örtlich" });
    menu->items()[2]->isEnabled = false;
    auto const& view = open(menu);
    struct Row {
        char const* key;
        char const* title;
    };
    for (auto const& row : { Row { "b", "Beta" }, { "g", "gamma" }, { "B", "Beta" }, { "b", "Beta" }, { "a", "alpha" },
             { "odiaeresis", "Örtlich" } }) {
        auto const before = menu->keys.size();
        pressKey(QLatin1String(row.key));
        ASSERT_TRUE(waitFor([&] { return menu->keys.size() > before; }));
        EXPECT_EQ(highlighted(&view), row.title) << row.key;
    }
    pressKey("z");
    pressKey("ctrl+a");
    ASSERT_TRUE(waitFor([&] { return menu->keys.size() == 8; }));
    EXPECT_EQ(highlighted(&view), "Örtlich");
}

TEST_F(MenuKeysTest, LettersOfOtherScriptsAreThemselves)
{
    Layout const russian("ru");
    auto const menu = makeMenu({ "alpha", "Жук" });
    auto const& view = open(menu);
    pressKey("Cyrillic_zhe");
    ASSERT_TRUE(waitForHighlight(view, "Жук"));
    EXPECT_EQ(menu->keys.back().charactersIgnoringModifiers, "ж");
    pressKey("super+shift+Cyrillic_zhe");
    ASSERT_TRUE(waitFor([&] { return menu->keys.size() == 2; }));
    EXPECT_EQ(menu->keys.back().charactersIgnoringModifiers, "Ж");
}

TEST_F(MenuKeysTest, ATypedLetterHighlightsAFolderWithoutOpeningIt)
{
    auto const inner = makeMenu({ "inside" });
    auto const menu = makeMenu({ "alpha" });
    addSubmenu(*menu, "folder", inner);
    auto const& view = open(menu);
    for (int round = 1; round <= 2; ++round) {
        pressKey("f");
        ASSERT_TRUE(waitForHighlight(view, "folder"));
        EXPECT_EQ(depth(), 1);
        EXPECT_EQ(inner->updates, round - 1);
        pressKey("Right");
        ASSERT_TRUE(waitForDepth(2));
        EXPECT_EQ(inner->updates, round);
        EXPECT_TRUE(waitForHighlight(*deepest(), "inside"));
        pressKey("Left");
        ASSERT_TRUE(waitForDepth(1));
        pressKey("a");
        ASSERT_TRUE(waitForHighlight(view, "alpha"));
    }
}

TEST_F(MenuKeysTest, ReturnOnAFolderOnlyOpensIt)
{
    bool hasRun = false;
    auto const menu = makeMenu({});
    addSubmenu(*menu, "folder", makeMenu({ "inside" }))->action = [&](MenuItem&) { hasRun = true; };
    open(menu);
    pressKey("Down");
    pressKey("Return");
    ASSERT_TRUE(waitForDepth(2));
    presenter_->cancelTracking();
    QCoreApplication::processEvents();
    EXPECT_FALSE(hasRun);
}

}
}
