#include "Freedesktop/Preview/PreviewWindow.h"

#include "Freedesktop/Interface/SessionSupport.h"
#include "Freedesktop/Preview/PreviewFiles.h"

#include <QAccessible>
#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTextBlock>

#include <gtest/gtest.h>

#include <unistd.h>

namespace marrowick {
namespace {

class OneItem : public PreviewPanelDataSource {
public:
    std::size_t numberOfPreviewItems(PreviewPanel const&) const override { return url ? 1 : 0; }
    std::optional<FileURL> previewPanel(PreviewPanel const&, std::size_t) const override { return url; }

    std::optional<FileURL> url;
};

class PreviewWindowTest : public testing::Test {
protected:
    PreviewWindowTest() { window_->setDataSource(&source_); }

    void ask(FileURL const& url)
    {
        source_.url = url;
        window_->makeKeyAndOrderFront();
        window_->reloadData();
    }

    void preview(FileURL const& url)
    {
        ask(url);
        auto const title = QString::fromStdString(std::string(url.lastPathComponent()));
        EXPECT_TRUE(waitFor([&] { return window_->isVisible() && window_->windowTitle() == title && !isLoading(); }))
            << url.path() << ": " << window_->windowTitle().toStdString();
    }

    bool isLoading() const
    {
        for (auto const* label : window_->findChildren<QLabel*>()) {
            if (label->isVisible() && label->text().startsWith(u"Loading"_qs))
                return true;
        }
        return false;
    }

    QStringList texts() const
    {
        QStringList shown;
        for (auto const* label : window_->findChildren<QLabel*>()) {
            if (label->isVisible() && !label->text().isEmpty())
                shown.append(label->text());
        }
        return shown;
    }

    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        auto* const target = window_->focusWidget() ? window_->focusWidget() : window_.get();
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(target, &event);
    }

    QWidget* view() const { return window_->findChild<QStackedWidget*>()->currentWidget(); }
    QScrollBar* scrollBar() const { return qobject_cast<QAbstractScrollArea*>(view())->verticalScrollBar(); }
    QPlainTextEdit* text() const { return qobject_cast<QPlainTextEdit*>(view()); }

    FileURL manyLines() { return files_.write("lines.txt", QByteArray("A line of text.\n").repeated(1000)); }

    PreviewFiles files_;
    OneItem source_;
    std::shared_ptr<DeliveryGate> gate_ = std::make_shared<DeliveryGate>();
    std::unique_ptr<PreviewWindow> window_ = std::make_unique<PreviewWindow>(gate_);
};

TEST_F(PreviewWindowTest, TextIsShown)
{
    preview(files_.write("notes.txt", "Some words.\n"));
    ASSERT_TRUE(text());
    EXPECT_EQ(text()->toPlainText(), u"Some words.\n"_qs);
    EXPECT_TRUE(QFontInfo(text()->font()).fixedPitch());
}

TEST_F(PreviewWindowTest, SmallPictureIsShownPixelByPixel)
{
    auto const picture = twoColours({ 20, 10 });
    preview(files_.write("small.png", imageFile("png", picture)));
    auto const shot = view()->grab().toImage();
    auto const corner = QPoint((shot.width() - 20) / 2, (shot.height() - 10) / 2);
    EXPECT_EQ(shot.pixelColor(corner), QColor(Qt::red));
    EXPECT_EQ(shot.pixelColor(corner + QPoint(9, 9)), QColor(Qt::red));
    EXPECT_EQ(shot.pixelColor(corner + QPoint(10, 0)), QColor(Qt::blue));
    EXPECT_EQ(shot.pixelColor(corner + QPoint(19, 9)), QColor(Qt::blue));
    for (auto const outside : { QPoint(-1, 0), QPoint(20, 9), QPoint(0, 10), QPoint(5, -1) })
        EXPECT_EQ(shot.pixelColor(corner + outside), view()->palette().color(QPalette::Window));
}

TEST_F(PreviewWindowTest, LargePictureFitsTheScreen)
{
    preview(files_.write("large.png", imageFile("png", twoColours({ 4000, 3000 }))));
    auto const room = window_->screen()->availableGeometry().size() * 0.8;
    EXPECT_LE(window_->width(), room.width() + 1);
    EXPECT_LE(window_->height(), room.height() + 1);
    EXPECT_NEAR(double(window_->width()) / window_->height(), 4.0 / 3, 0.01);
    EXPECT_TRUE(window_->screen()->availableGeometry().contains(window_->geometry()));
}

TEST_F(PreviewWindowTest, PagesAreDrawnWhenTheyComeIntoSight)
{
    preview(files_.write("pages.pdf", pdfPages({ "First", "Second", "Third" })));
    EXPECT_TRUE(waitFor([&] { return view()->accessibleDescription() == u"First"_qs; }));
    EXPECT_EQ(view()->accessibleName(), u"Page 1 of 3"_qs);
    press(Qt::Key_End);
    EXPECT_EQ(scrollBar()->value(), scrollBar()->maximum());
    EXPECT_TRUE(waitFor([&] {
        return view()->accessibleDescription() == u"Third"_qs || view()->accessibleDescription() == u"Second"_qs;
    }));
    EXPECT_NE(view()->accessibleName(), u"Page 1 of 3"_qs);
}

TEST_F(PreviewWindowTest, FolderIsACard)
{
    files_.makeFolder("Folder");
    files_.write("Folder/one", "");
    preview(files_.url("Folder"));
    auto const shown = texts().join(u'|');
    EXPECT_TRUE(shown.contains(u"Folder"_qs)) << shown.toStdString();
    EXPECT_TRUE(shown.contains(u"1 item \u2022 "_qs)) << shown.toStdString();
}

TEST_F(PreviewWindowTest, KeysScroll)
{
    preview(manyLines());
    auto* const bar = scrollBar();
    int const start = bar->value();
    press(Qt::Key_Down);
    int const afterDown = bar->value();
    EXPECT_GT(afterDown, start);
    press(Qt::Key_PageDown);
    EXPECT_GT(bar->value(), afterDown + 5);
    press(Qt::Key_PageUp);
    EXPECT_EQ(bar->value(), afterDown);
    press(Qt::Key_Up);
    EXPECT_EQ(bar->value(), start);
    press(Qt::Key_End);
    EXPECT_EQ(bar->value(), bar->maximum());
    press(Qt::Key_Home);
    EXPECT_EQ(bar->value(), start);
}

TEST_F(PreviewWindowTest, EscapeAndSpaceCloseEveryKindOfView)
{
    FileURL const urls[] = { manyLines(), files_.write("a.png", imageFile("png", twoColours({ 20, 10 }))),
        files_.write("a.pdf", pdfPages({ "Text" })), files_.makeFolder("Folder") };
    for (auto const& url : urls) {
        for (auto const key : { Qt::Key_Escape, Qt::Key_Space }) {
            preview(url);
            press(key);
            EXPECT_FALSE(window_->isVisible()) << url.path();
        }
    }
}

TEST_F(PreviewWindowTest, AnotherItemReplacesTheFirstInTheSameWindow)
{
    preview(files_.write("a.txt", "First.\n"));
    auto const first = window_->winId();
    preview(files_.write("b.txt", "Second.\n"));
    EXPECT_EQ(window_->winId(), first);
    EXPECT_EQ(text()->toPlainText(), u"Second.\n"_qs);
}

TEST_F(PreviewWindowTest, LateResultOfAnEarlierItemIsDropped)
{
    auto const slow = files_.write("slow.png", imageFile("png", twoColours({ 6000, 6000 })));
    ask(slow);
    preview(files_.write("fast.txt", "Fast.\n"));
    EXPECT_FALSE(waitFor([&] { return window_->windowTitle() != u"fast.txt"_qs || !text(); }, std::chrono::seconds(2)));
}

TEST_F(PreviewWindowTest, ClosedWindowStaysClosedWhenTheItemArrives)
{
    source_.url = files_.write("a.txt", "Words.\n");
    preview(*source_.url);
    ask(files_.write("slow.png", imageFile("png", twoColours({ 5000, 5000 }))));
    press(Qt::Key_Escape);
    EXPECT_FALSE(waitFor([&] { return window_->isVisible(); }, std::chrono::seconds(1)));
}

TEST_F(PreviewWindowTest, ResultsWaitWhileTheGateIsClosed)
{
    auto const url = files_.write("a.txt", "Words.\n");
    {
        DeliveryGate::Closure const closure(*gate_);
        ask(url);
        EXPECT_FALSE(waitFor([&] { return text() != nullptr; }, std::chrono::milliseconds(500)));
    }
    EXPECT_TRUE(waitFor([&] { return text() && text()->toPlainText() == u"Words.\n"_qs; }));
}

TEST_F(PreviewWindowTest, ItemThatTakesTooLongIsGivenUp)
{
    window_ = std::make_unique<PreviewWindow>(gate_, std::chrono::milliseconds(300));
    window_->setDataSource(&source_);
    auto const note = u"The item takes too long to be shown."_qs;
    {
        DeliveryGate::Closure const closure(*gate_);
        ask(files_.write("a.txt", "Words.\n"));
        EXPECT_TRUE(waitFor([&] { return texts().contains(note); }));
        EXPECT_EQ(window_->windowTitle(), u"a.txt"_qs);
    }
    EXPECT_FALSE(waitFor([&] { return !texts().contains(note); }, std::chrono::milliseconds(200)));
    preview(files_.write("b.txt", "Words.\n"));
    EXPECT_TRUE(text());
}

TEST_F(PreviewWindowTest, EndWhileLoadingIsClean)
{
    for (auto const& url : { files_.write("large.png", imageFile("png", twoColours({ 6000, 6000 }))),
             files_.write("endless.pdf", endlessPdf()), manyLines() }) {
        QElapsedTimer timer;
        ask(url);
        waitFor([] { return false; }, std::chrono::milliseconds(200));
        timer.start();
        window_.reset();
        EXPECT_LT(timer.elapsed(), 2500) << url.path();
        window_ = std::make_unique<PreviewWindow>(gate_);
        window_->setDataSource(&source_);
    }
    waitFor([] { return false; }, std::chrono::milliseconds(200));
}

TEST_F(PreviewWindowTest, TextsOfAnyShapeLeaveTheWindowQuick)
{
    qsizetype const size = 1024 * 1024;
    struct Shape {
        char const* name;
        QByteArray content;
    };
    Shape const shapes[] = { { "line.txt", QByteArray(size, 'x') },
        { "ends.txt", QByteArray("x\n").repeated(size / 2) },
        { "only-ends.txt", "text\n" + QByteArray(size - 5, '\n') }, { "tabs.txt", "x" + QByteArray(size - 1, '\t') },
        { "wide.txt", QByteArray("\xE6\xBC\xA2").repeated(size / 3) } };
    for (auto const& [name, content] : shapes) {
        auto const url = files_.write(name, content);
        ask(url);
        QElapsedTimer timer;
        qint64 longest = 0;
        timer.start();
        auto const title = QString::fromUtf8(name);
        while (!(window_->windowTitle() == title && !isLoading())) {
            timer.restart();
            QCoreApplication::processEvents(QEventLoop::AllEvents);
            longest = std::max(longest, timer.elapsed());
        }
        timer.restart();
        window_->repaint();
        press(Qt::Key_End);
        QCoreApplication::processEvents();
        longest = std::max(longest, timer.elapsed());
        EXPECT_LT(longest, 1000) << name;
    }
}

TEST_F(PreviewWindowTest, TextOfManyLinesArrivesWhole)
{
    preview(files_.write("lines.txt", QByteArray("x\n").repeated(100'000) + "end"));
    EXPECT_TRUE(waitFor([&] { return text()->document()->lastBlock().text() == u"end"_qs; }));
    EXPECT_EQ(text()->blockCount(), 100'001);
    EXPECT_EQ(scrollBar()->value(), 0);
}

TEST_F(PreviewWindowTest, OpenMenuStaysOpen)
{
    QMenu menu;
    menu.addAction(u"Entry"_qs);
    menu.popup({ 10, 10 });
    preview(files_.write("a.txt", "Words.\n"));
    EXPECT_TRUE(menu.isVisible());
    EXPECT_EQ(QApplication::activePopupWidget(), &menu);
}

TEST_F(PreviewWindowTest, ScreenReadersFindNameAndText)
{
    preview(files_.write("a.txt", "Words.\n"));
    auto* const frame = QAccessible::queryAccessibleInterface(window_.get());
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->text(QAccessible::Name), u"a.txt"_qs);
    EXPECT_TRUE(frame->text(QAccessible::Description).contains(u"7 bytes"_qs));
    auto* const words = QAccessible::queryAccessibleInterface(text());
    ASSERT_TRUE(words && words->textInterface());
    EXPECT_EQ(words->textInterface()->text(0, 6), u"Words."_qs);

    preview(files_.write("a.png", imageFile("png", twoColours({ 20, 10 }))));
    auto* const picture = QAccessible::queryAccessibleInterface(view());
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->role(), QAccessible::Graphic);
    EXPECT_EQ(picture->text(QAccessible::Name), u"a.png"_qs);
}

TEST_F(PreviewWindowTest, TitleShowsTheNameSafely)
{
    auto const url = files_.write("a\nb[*]\xff.txt", "Words.\n");
    ask(url);
    EXPECT_TRUE(waitFor([&] { return text() && window_->isVisible(); }));
    EXPECT_EQ(window_->windowTitle(), u"a\u240Ab[*][*]\uFFFD.txt"_qs);
    // The toolkit could not.
    ::unlink(url.path().c_str());
}

TEST_F(PreviewWindowTest, NoItemShowsNothing)
{
    preview(files_.write("a.txt", "Words.\n"));
    source_.url.reset();
    window_->reloadData();
    EXPECT_FALSE(window_->isVisible());
    window_->setDataSource(nullptr);
    window_->reloadData();
    EXPECT_FALSE(window_->isVisible());
}

}
}
