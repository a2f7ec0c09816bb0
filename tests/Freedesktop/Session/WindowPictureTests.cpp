#include "Freedesktop/Session/DesktopFixtures.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

namespace marrowick {

namespace {

/// A desktop whose windows bring pictures along.
class WindowPictureTest : public RunningApplicationsTest {
protected:
    static std::vector<std::uint32_t> picture(std::uint32_t side, std::uint32_t colour)
    {
        std::vector<std::uint32_t> numbers { side, side };
        numbers.insert(numbers.end(), std::size_t { side } * side, colour);
        return numbers;
    }

    xcb_window_t windowWith(std::vector<std::uint32_t> const& pictures, char const* type = "CARDINAL")
    {
        auto const window = display_.makeWindow("a", "A");
        display_.setNumbers(window, "_NET_WM_ICON", type, pictures);
        return window;
    }

    Image iconOfA(std::vector<xcb_window_t> const& windows)
    {
        display_.announce(windows);
        return find("A")->icon();
    }

    static Image pictureOf(int side, std::uint32_t colour)
    {
        auto const count = static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
        return { Bitmap { side, side, std::make_shared<std::vector<std::uint32_t> const>(count, colour) }, 0, {}, 1 };
    }
};

}

TEST_F(WindowPictureTest, WithoutADesktopEntryTheIconIsTheWindows)
{
    EXPECT_EQ(iconOfA({ windowWith(picture(32, 0x80FF0000)) }), pictureOf(32, 0x80FF0000));
}

TEST_F(WindowPictureTest, TheFirstWindowThatHasOneGivesIt)
{
    auto const bare = display_.makeWindow("a", "A");
    EXPECT_EQ(iconOfA({ bare, windowWith({ 5, 5, 1 }), windowWith(picture(16, 0xFF00FF00)),
                  windowWith(picture(32, 0xFF0000FF)) }),
        pictureOf(16, 0xFF00FF00));
}

TEST_F(WindowPictureTest, WithoutAnyPictureADrawingStandsForTheApplication)
{
    auto const drawing = Image::systemSymbol("app");
    EXPECT_EQ(iconOfA({ display_.makeWindow("a", "A") }), drawing);
    EXPECT_EQ(iconOfA({ windowWith(picture(8, 1), "WINDOW") }), drawing);
    auto const text = display_.makeWindow("a", "A");
    display_.setText(text, "_NET_WM_ICON", "picture");
    EXPECT_EQ(iconOfA({ text }), drawing);
    // Larger than any that is taken.
    EXPECT_EQ(iconOfA({ windowWith(picture(1025, 0xFF000000)) }), drawing);
}

TEST_F(WindowPictureTest, TheLargestPictureThatIsTakenArrivesWhole)
{
    EXPECT_EQ(iconOfA({ windowWith(picture(1024, 0xFF000000)) }), pictureOf(1024, 0xFF000000));
}

TEST_F(WindowPictureTest, AnApplicationWhoseFirstWindowsBringNoneHasNone)
{
    std::vector<xcb_window_t> windows;
    for (int number = 0; number < 4; ++number)
        windows.push_back(display_.makeWindow("a", "A"));
    windows.push_back(windowWith(picture(32, 0xFF00FF00)));
    EXPECT_EQ(iconOfA(windows), Image::systemSymbol("app"));
}

TEST_F(WindowPictureTest, AnApplicationThatQuitKeepsItsIcon)
{
    auto const window = windowWith(picture(32, 0xFF00FF00));
    display_.announce({ window });
    auto const application = find("A");
    display_.destroy(window);
    EXPECT_EQ(application->icon(), pictureOf(32, 0xFF00FF00));
}

TEST_F(WindowPictureTest, AnApplicationThatWasTurnedToHasItsIconToo)
{
    std::shared_ptr<RunningApplication> turnedTo;
    auto const subscription = workspace_.observeActivation([&](auto const& application) { turnedTo = application; });
    auto const window = windowWith(picture(32, 0xFF00FF00));
    display_.announce({ window }, window);
    ASSERT_TRUE(waitFor([&] { return turnedTo != nullptr; }));
    EXPECT_EQ(turnedTo->icon(), pictureOf(32, 0xFF00FF00));
    display_.destroy(window);
    EXPECT_EQ(turnedTo->icon(), Image::systemSymbol("app"));
}

TEST_F(WindowPictureTest, ASmallPictureBehindALargeOneIsFound)
{
    auto pictures = picture(256, 0xFFFF0000);
    auto const small = picture(32, 0xFF00FF00);
    pictures.insert(pictures.end(), small.begin(), small.end());
    EXPECT_EQ(iconOfA({ windowWith(pictures) }), pictureOf(32, 0xFF00FF00));
    EXPECT_EQ(iconOfA({ windowWith(picture(256, 0xFF0000FF)) }), pictureOf(256, 0xFF0000FF));
    auto tiny = picture(8, 0xFFFF0000);
    auto const large = picture(64, 0xFF00FF00);
    tiny.insert(tiny.end(), large.begin(), large.end());
    EXPECT_EQ(iconOfA({ windowWith(tiny) }), pictureOf(64, 0xFF00FF00));
}

TEST_F(WindowPictureTest, AnInstalledApplicationHasItsEntrysIcon)
{
    auto const path = environmentVariable("XDG_DATA_HOME") + "/applications/pictured.desktop";
    writeFile(path, "[Desktop Entry]\nType=Application\nName=P\nExec=true\nStartupWMClass=A\n");
    display_.announce({ windowWith(picture(32, 0xFF000000)) });
    EXPECT_EQ(find("pictured")->icon(), Image::iconForFile(FileURL(path), 0));
    std::filesystem::remove(path);
}

}
