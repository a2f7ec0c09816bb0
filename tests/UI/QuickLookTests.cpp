#include "Fakes/TestPlatform.h"
#include "UI/QuickLookController.h"

#include <optional>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

FileURL const first("/a/first.pdf");
FileURL const second("/a/second.png");

class QuickLookTest : public PlatformTest {
protected:
    static QuickLookController& controller() { return QuickLookController::shared(); }
    FakeWindows::Preview& panel() { return desktop.windows.preview; }
};

TEST_F(QuickLookTest, BeforeAnyPreviewThereIsNoItem)
{
    EXPECT_EQ(controller().numberOfPreviewItems(panel()), 0u);
    EXPECT_EQ(controller().previewPanel(panel(), 0), std::nullopt);
}

TEST_F(QuickLookTest, APreviewIsShownInFrontAndThenLoaded)
{
    controller().preview(first);
    EXPECT_EQ(desktop.calls, (CallRecord { "preview asks", "preview in front", "preview reloads" }));
    EXPECT_EQ(panel().dataSource, &controller());
    EXPECT_EQ(panel().shown, first);
}

TEST_F(QuickLookTest, ASecondItemTakesThePlaceOfTheFirst)
{
    controller().preview(first);
    controller().preview(second);
    EXPECT_EQ(panel().shown, second);
    EXPECT_EQ(controller().numberOfPreviewItems(panel()), 1u);
}

TEST_F(QuickLookTest, TheIndexIsIgnored)
{
    controller().preview(first);
    EXPECT_EQ(controller().previewPanel(panel(), 5), first);
}

TEST_F(QuickLookTest, WithoutAPanelNothingIsShownButTheItemIsKept)
{
    desktop.windows.hasPreview = false;
    controller().preview(first);
    EXPECT_TRUE(desktop.calls.empty());
    EXPECT_EQ(controller().numberOfPreviewItems(panel()), 1u);
}

TEST_F(QuickLookTest, TheProgramIsNotBroughtToTheFront)
{
    controller().preview(first);
    EXPECT_EQ(desktop.application.activations, 0);
}

}
}
