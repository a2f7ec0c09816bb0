#include "Freedesktop/Preview/PdfFile.h"

#include "Freedesktop/Preview/PreviewFiles.h"

#include <gtest/gtest.h>

#include <thread>

namespace marrowick {
namespace {

using namespace std::chrono_literals;

class PdfFileTest : public testing::Test {
protected:
    std::variant<std::shared_ptr<PdfFile>, PdfFailure> open(QByteArray const& content)
    {
        auto const limit = std::make_shared<LoadLimit>(20s);
        auto device = std::make_unique<RegularFileDevice>(limit);
        EXPECT_TRUE(device->openFile(files_.write("a.pdf", content)));
        return PdfFile::open(std::move(device), *limit);
    }

    std::shared_ptr<PdfFile> opened(QByteArray const& content)
    {
        auto result = open(content);
        auto* const file = std::get_if<std::shared_ptr<PdfFile>>(&result);
        return file ? *file : nullptr;
    }

    PreviewFiles files_;
};

TEST_F(PdfFileTest, PagesAreDrawnInTheSizeAskedFor)
{
    auto const file = opened(pdfPages({ "First", "Second" }));
    ASSERT_TRUE(file);
    ASSERT_EQ(file->pageSizes().size(), 2U);
    EXPECT_EQ(file->pageSizes()[0], QSizeF(400, 600));
    auto const page = file->page(1, { 200, 300 }, std::make_shared<LoadLimit>(20s));
    EXPECT_EQ(page.image.size(), QSize(200, 300));
    EXPECT_EQ(page.text, QStringLiteral("Second"));
    auto const blue = page.image.pixelColor(100, 45);
    EXPECT_GT(blue.blue(), blue.red() + 50);
}

TEST_F(PdfFileTest, DocumentsThatCannotBeReadAreToldApart)
{
    auto const whole = pdfPages({ "First" });
    EXPECT_EQ(std::get<PdfFailure>(open(whole.first(60))), PdfFailure::damaged);
    EXPECT_EQ(std::get<PdfFailure>(open("%PDF-1.4\n")), PdfFailure::damaged);
    QByteArray const key = '<' + QByteArray("5a").repeated(32) + '>';
    auto const locked = pdfPages(
        { "Secret" }, "/ID [<00> <00>] /Encrypt << /Filter /Standard /V 1 /R 2 /P -4 /O " + key + " /U " + key + " >>");
    EXPECT_EQ(std::get<PdfFailure>(open(locked)), PdfFailure::locked);
}

TEST_F(PdfFileTest, EveryTruncationEndsInAnAnswer)
{
    auto const whole = pdfPages({ "First", "Second", "Third" });
    for (qsizetype size = 9; size < whole.size(); size += 37) {
        if (auto const file = opened(whole.first(size))) {
            EXPECT_FALSE(file->pageSizes().empty()) << size;
            file->page(static_cast<int>(file->pageSizes().size()) - 1, { 40, 60 }, std::make_shared<LoadLimit>(20s));
        }
    }
}

TEST_F(PdfFileTest, PageWithoutEndStopsAtTheLimit)
{
    auto const file = opened(endlessPdf());
    ASSERT_TRUE(file);
    auto const begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(file->page(0, { 200, 200 }, std::make_shared<LoadLimit>(200ms)).image.isNull());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
}

TEST_F(PdfFileTest, PageWithoutEndStopsWhenItIsCancelled)
{
    auto const file = opened(endlessPdf());
    ASSERT_TRUE(file);
    auto const limit = std::make_shared<LoadLimit>(1h);
    bool isNull = false;
    std::thread drawing([&] { isNull = file->page(0, { 200, 200 }, limit).image.isNull(); });
    std::this_thread::sleep_for(50ms);
    limit->cancel();
    drawing.join();
    EXPECT_TRUE(isNull);
}

}
}
