#include "Fakes/DiskTest.h"
#include "UI/InfoWindowController.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

FileURL const item("/a/some item.txt");

Bitmap picture(std::uint32_t pixel)
{
    return { 1, 1, std::make_shared<std::vector<std::uint32_t> const>(1, pixel) };
}

/// What an item has, and the line that tells it.
struct DetailCase {
    char const* name;
    std::optional<bool> isDirectory;
    std::optional<std::uint64_t> size;
    std::size_t entries;
    std::optional<FileType> type;
    std::optional<long> seconds;
    char const* line;
};

void PrintTo(DetailCase const& detail, std::ostream* stream)
{
    *stream << detail.name;
}

class DetailTextTest : public PlatformTest, public testing::WithParamInterface<DetailCase> { };

TEST_P(DetailTextTest, TellsWhatIsKnown)
{
    auto const& detail = GetParam();
    ResourceValues values;
    values.isDirectory = detail.isDirectory;
    values.fileSize = detail.size;
    if (detail.seconds)
        values.contentModificationDate = FileTime(std::chrono::seconds(*detail.seconds));
    desktop.fileManager.values[item] = values;
    if (detail.isDirectory.value_or(false)) {
        auto& listing = desktop.fileManager.listings[item];
        for (std::size_t i = 0; i < detail.entries; ++i)
            listing.push_back({ item.appendingPathComponent(std::to_string(i)), {} });
    }
    if (detail.type)
        desktop.fileTypes.types[item] = *detail.type;
    EXPECT_EQ(InfoWindowController::detailText(item), detail.line);
}

FileType const plainText { "text/plain", "plain text document" };
FileType const folderType { "inode/directory", "Folder" };
FileType const nameless { "application/x-odd", std::nullopt };

INSTANTIATE_TEST_SUITE_P(InfoWindow, DetailTextTest,
    testing::Values(DetailCase { "everything", false, 1234, 0, plainText, 5,
                        "<1234 bytes> • plain text document • Modified <5 s>" },
        DetailCase { "an empty file", false, 0, 0, plainText, 0, "<0 bytes> • plain text document • Modified <0 s>" },
        DetailCase { "an empty folder", true, 4096, 0, folderType, 5, "0 items • Folder • Modified <5 s>" },
        DetailCase { "a folder of one", true, 4096, 1, folderType, 5, "1 item • Folder • Modified <5 s>" },
        DetailCase { "a folder of twelve", true, 4096, 12, folderType, 5, "12 items • Folder • Modified <5 s>" },
        DetailCase { "no size", false, std::nullopt, 0, plainText, 5, "plain text document • Modified <5 s>" },
        DetailCase { "no type", false, 7, 0, std::nullopt, 5, "<7 bytes> • Modified <5 s>" },
        DetailCase {
            "a type without description", false, 7, 0, nameless, 5, "<7 bytes> • application/x-odd • Modified <5 s>" },
        DetailCase { "no date", false, 7, 0, plainText, std::nullopt, "<7 bytes> • plain text document" },
        DetailCase { "a size alone", std::nullopt, 7, 0, std::nullopt, std::nullopt, "<7 bytes>" },
        DetailCase { "nothing", std::nullopt, std::nullopt, 0, std::nullopt, std::nullopt, "" }));

TEST_F(DetailTextTest, AFolderThatCannotBeListedHasNoItems)
{
    desktop.fileManager.values[item].isDirectory = true;
    desktop.fileManager.unreadable.insert(item);
    EXPECT_EQ(InfoWindowController::detailText(item), "0 items");
}

class FolderDetailTest : public DiskTest { };

TEST_F(FolderDetailTest, HiddenEntriesCountAndThoseBelowDoNot)
{
    folder.folder("inside/sub");
    folder.file("inside/.hidden");
    folder.file("inside/sub/below");
    EXPECT_TRUE(InfoWindowController::detailText(folder / "inside").starts_with("2 items"));
}

TEST_F(FolderDetailTest, TheSizeOfARealFileIsTold)
{
    folder.file("five", "12345");
    EXPECT_TRUE(InfoWindowController::detailText(folder / "five").starts_with("<5 bytes> • Modified <"));
}

class InfoWindowTest : public PlatformTest {
protected:
    InfoWindowTest()
    {
        desktop.fileManager.values[picture_] = {};
        desktop.fileManager.values[other_] = {};
    }

    void show(FileURL const& url) { InfoWindowController::shared().show(url); }
    void press(char const* title) { desktop.windows.press(title); }
    FakeWindows::InfoState& panel() { return desktop.windows.info; }

    FileURL const picture_ { "/pictures/a.png" };
    FileURL const other_ { "/pictures/b.png" };
};

TEST_F(InfoWindowTest, TheButtonsStandInTheirOrderWithTheirKeys)
{
    show(picture_);
    auto const& buttons = panel().handlers.buttons;
    ASSERT_EQ(buttons.size(), 4u);
    std::vector<std::pair<std::string, char>> shown;
    for (auto const& button : buttons)
        shown.emplace_back(button.title, button.keyEquivalent);
    EXPECT_EQ(shown,
        (std::vector<std::pair<std::string, char>> {
            { "Trash", '\x7F' }, { "Reveal", 'r' }, { "Get Info", 'i' }, { "Dismiss", '\x1B' } }));
}

TEST_F(InfoWindowTest, ShowingFillsThePanelThenBringsItAndTheProgramToTheFront)
{
    show(picture_);
    EXPECT_EQ(panel().name, "a.png");
    EXPECT_EQ(panel().path, "/pictures/a.png");
    EXPECT_EQ(panel().detail, "");
    EXPECT_EQ(InfoWindowController::shared().currentURL(), picture_);
    EXPECT_FALSE(InfoWindowController::shared().showingHexDump());
    EXPECT_EQ(desktop.calls, (CallRecord { "info in front" }));
    EXPECT_EQ(desktop.application.activations, 1);
}

TEST_F(InfoWindowTest, BeforeTheFirstItemThereIsNone)
{
    EXPECT_EQ(InfoWindowController::shared().currentURL(), std::nullopt);
    EXPECT_EQ(panel().timesShown, 0);
}

TEST_F(InfoWindowTest, ASecondItemTakesThePlaceOfTheFirst)
{
    show(picture_);
    show(other_);
    EXPECT_EQ(panel().name, "b.png");
    EXPECT_EQ(panel().timesShown, 2);
    press("Reveal");
    EXPECT_EQ(desktop.workspace.revealed, (FakeWorkspace::Revealed { { other_ } }));
}

TEST_F(InfoWindowTest, TheThumbnailIsAskedForInPointsAndAtThePanelsScale)
{
    desktop.windows.scale = 2;
    show(picture_);
    ASSERT_EQ(desktop.thumbnails.questions.size(), 1u);
    auto const& question = desktop.thumbnails.questions.front();
    EXPECT_EQ(question.url, picture_);
    EXPECT_EQ(question.pointSize, 96);
    EXPECT_EQ(question.scale, 2);
}

TEST_F(InfoWindowTest, TheThumbnailIsShownWhenItComes)
{
    show(picture_);
    EXPECT_EQ(panel().icon, std::nullopt);
    desktop.thumbnails.answer(picture(0xFF112233));
    EXPECT_EQ(panel().icon, picture(0xFF112233));
}

TEST_F(InfoWindowTest, ALateThumbnailOfAnEarlierItemIsDropped)
{
    show(picture_);
    show(other_);
    desktop.thumbnails.answer(picture(1));
    EXPECT_EQ(panel().icon, std::nullopt);
    desktop.thumbnails.answer(picture(2));
    EXPECT_EQ(panel().icon, picture(2));
}

TEST_F(InfoWindowTest, WhenNoThumbnailComesTheImageShownBeforeStays)
{
    show(picture_);
    desktop.thumbnails.answer(picture(1));
    show(other_);
    EXPECT_EQ(panel().icon, picture(1));
    desktop.thumbnails.answer(std::nullopt);
    EXPECT_EQ(panel().icon, picture(1));
}

TEST_F(InfoWindowTest, ATypeOfTextShowsAPreviewEvenWhereTheFileCannotBeRead)
{
    FileURL const text("/notes/a.txt");
    desktop.fileManager.values[text].isDirectory = false;
    desktop.fileContents.inaccessible.insert(text);
    show(text);
    EXPECT_EQ(panel().preview, "");
}

TEST_F(InfoWindowTest, OtherTypesAndDirectoriesShowNone)
{
    show(picture_);
    EXPECT_EQ(panel().preview, std::nullopt);
    FileURL const directory("/notes/folder.txt");
    desktop.fileManager.values[directory].isDirectory = true;
    desktop.fileManager.listings[directory];
    show(directory);
    EXPECT_EQ(panel().preview, std::nullopt);
}

TEST_F(InfoWindowTest, TrashRecyclesWithoutAskingAndCloses)
{
    show(picture_);
    press("Trash");
    EXPECT_EQ(desktop.workspace.recycled, (std::vector<std::vector<FileURL>> { { picture_ } }));
    EXPECT_FALSE(panel().isShown);
    EXPECT_TRUE(desktop.alerts.asked.empty());
}

TEST_F(InfoWindowTest, RevealShowsTheItemAndStaysOpen)
{
    show(picture_);
    press("Reveal");
    EXPECT_EQ(desktop.workspace.revealed, (FakeWorkspace::Revealed { { picture_ } }));
    EXPECT_TRUE(panel().isShown);
}

TEST_F(InfoWindowTest, GetInfoAsksTheFileManagerAndStaysOpen)
{
    FileURL const odd("/a \"quoted\\ name\"");
    desktop.fileManager.values[odd] = {};
    show(odd);
    press("Get Info");
    EXPECT_EQ(desktop.finder.informationWindows, std::vector { odd });
    EXPECT_TRUE(panel().isShown);
}

TEST_F(InfoWindowTest, DismissCloses)
{
    show(picture_);
    press("Dismiss");
    EXPECT_FALSE(panel().isShown);
    EXPECT_EQ(desktop.calls, (CallRecord { "info in front" }));
}

TEST_F(InfoWindowTest, ADoubleClickOnTheIconOpensTheFileAndCloses)
{
    show(picture_);
    panel().handlers.iconPressed(2);
    EXPECT_EQ(desktop.workspace.opened, std::vector { picture_ });
    EXPECT_TRUE(panel().dragged.empty());
    EXPECT_FALSE(panel().isShown);
}

TEST_F(InfoWindowTest, AnyOtherPressOnTheIconStartsADrag)
{
    show(picture_);
    panel().handlers.iconPressed(1);
    panel().handlers.iconPressed(3);
    EXPECT_EQ(panel().dragged, (std::vector { picture_, picture_ }));
    EXPECT_TRUE(desktop.workspace.opened.empty());
    EXPECT_TRUE(panel().isShown);
}

TEST_F(InfoWindowTest, ADoubleClickOnThePathCopiesThePathAndCloses)
{
    FileURL const spaced("/pictures/a picture%20.png");
    desktop.fileManager.values[spaced] = {};
    show(spaced);
    panel().handlers.pathDoubleClicked();
    EXPECT_EQ(desktop.pasteboard.text, "/pictures/a picture%20.png");
    EXPECT_FALSE(panel().isShown);
}

TEST_F(InfoWindowTest, WithoutAnItemTheActionsOnlyClose)
{
    InfoWindowController::shared();
    panel().isShown = true;
    for (auto const* title : { "Reveal", "Get Info" }) {
        press(title);
        EXPECT_TRUE(panel().isShown);
    }
    panel().handlers.iconPressed(1);
    std::vector<std::function<void()>> const closing { [&] { press("Trash"); }, [&] { press("Dismiss"); },
        [&] { panel().handlers.iconPressed(2); }, [&] { panel().handlers.pathDoubleClicked(); } };
    for (auto const& close : closing) {
        panel().isShown = true;
        close();
        EXPECT_FALSE(panel().isShown);
    }
    EXPECT_TRUE(desktop.calls.empty());
    EXPECT_TRUE(panel().dragged.empty());
    EXPECT_EQ(desktop.pasteboard.text, std::nullopt);
}

TEST(InfoWindowLifetimeTest, AThumbnailThatComesAfterTheControllerIsDropped)
{
    std::function<void(std::optional<Bitmap>)> done;
    {
        TestPlatform desktop;
        desktop.fileManager.values[item] = {};
        desktop.fileContents.inaccessible.insert(item);
        InfoWindowController::shared().show(item);
        done = desktop.thumbnails.questions.front().done;
    }
    done(picture(1));
}

}
}
