#include "Freedesktop/Preview/PreviewLoader.h"

#include "Freedesktop/Files/AsOtherUser.h"
#include "Freedesktop/Preview/PreviewFiles.h"

#include <gtest/gtest.h>

#include <QFile>

#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace marrowick {
namespace {

using namespace std::chrono_literals;

class PreviewLoaderTest : public testing::Test {
protected:
    PreviewContent load(FileURL const& url, double scale = 1, std::chrono::milliseconds time = 20s)
    {
        return loadPreview({ url, QSize(400, 300), scale, "en_US" }, std::make_shared<LoadLimit>(time));
    }

    template<typename Kind>
    Kind shown(FileURL const& url, double scale = 1)
    {
        auto content = load(url, scale);
        auto* const kind = std::get_if<Kind>(&content.shown);
        EXPECT_TRUE(kind) << url.path() << " is shown as kind " << content.shown.index();
        return kind ? std::move(*kind) : Kind();
    }

    std::string note(FileURL const& url) { return shown<CardContent>(url).note.toStdString(); }

    PreviewFiles files_;
};

TEST_F(PreviewLoaderTest, PictureIsDecodedToFitTheRoom)
{
    for (auto const* format : { "png", "jpeg", "bmp", "ppm" }) {
        auto const image = shown<ImageContent>(files_.write("a", imageFile(format, twoColours({ 1600, 800 }))));
        EXPECT_EQ(image.naturalSize, QSize(1600, 800)) << format;
        EXPECT_EQ(image.image.size(), QSize(400, 200)) << format;
        EXPECT_GT(image.image.pixelColor(50, 100).red(), 200) << format;
        EXPECT_GT(image.image.pixelColor(350, 100).blue(), 200) << format;
    }
}

TEST_F(PreviewLoaderTest, SmallPictureKeepsItsPixels)
{
    auto const picture = twoColours({ 20, 10 });
    auto const image = shown<ImageContent>(files_.write("a.png", imageFile("png", picture)));
    EXPECT_EQ(image.naturalSize, QSize(20, 10));
    EXPECT_EQ(image.image.convertToFormat(picture.format()), picture);
}

TEST_F(PreviewLoaderTest, PictureIsTurnedAsItsCameraSays)
{
    auto const image = shown<ImageContent>(files_.write("a.jpg", jpegWithOrientation(twoColours({ 1600, 800 }), 6)));
    EXPECT_EQ(image.naturalSize, QSize(800, 1600));
    EXPECT_EQ(image.image.size(), QSize(150, 300));
    EXPECT_GT(image.image.pixelColor(75, 30).red(), 200);
    EXPECT_GT(image.image.pixelColor(75, 270).blue(), 200);
}

TEST_F(PreviewLoaderTest, DrawingIsDrawnForTheScale)
{
    auto const url = files_.write("a.svg",
        "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'><rect width='40' height='20' "
        "fill='red'/></svg>");
    for (double const scale : { 1.0, 2.0 }) {
        auto const image = shown<ImageContent>(url, scale);
        EXPECT_TRUE(image.isDrawing);
        EXPECT_EQ(image.naturalSize, QSize(40, 20));
        EXPECT_EQ(image.image.size(), QSize(40, 20) * scale);
        EXPECT_EQ(image.image.pixelColor(20, 10), QColor(Qt::red));
    }
}

TEST_F(PreviewLoaderTest, DrawingThatReadsOtherFilesIsNotDrawn)
{
    auto const start = QByteArray("<svg xmlns='http://www.w3.org/2000/svg' "
                                  "xmlns:xlink='http://www.w3.org/1999/xlink' width='40' height='20'>");
    auto const fifo = QByteArray::fromStdString(files_.makeFifo("fifo").path());
    EXPECT_NE(note(files_.write("a.svg", start + "<image width='9' height='9' xlink:href='" + fifo + "'/></svg>")), "");
    EXPECT_NE(
        note(files_.write("b.svg", start + "<image width='9' height='9' href='file://" + fifo + "'/></svg>")), "");
    EXPECT_NE(note(files_.write("c.svg",
                  "<?xml version='1.0'?><?xml-stylesheet type='text/css' href='" + fifo + "'?>" + start + "</svg>")),
        "");
}

TEST_F(PreviewLoaderTest, DrawingUnderAnotherNameIsNotDrawn)
{
    auto const drawing = QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'>"
                                    "<rect width='9' height='9'/></svg>");
    auto const isDrawn = [&](FileURL const& url) { return std::holds_alternative<ImageContent>(load(url).shown); };
    auto const comment = "<!--" + QByteArray(9000, ' ') + "-->";
    EXPECT_FALSE(isDrawn(files_.write("a.png", comment + drawing)));
    EXPECT_FALSE(isDrawn(files_.write("b.jpg", "<?xml version='1.0'?>" + comment + drawing)));
    auto const plain = files_.write("c.svgz", drawing);
    auto const path = QByteArray::fromStdString(plain.path());
    ASSERT_EQ(std::system(("gzip -S .part '" + path + "' && mv '" + path + ".part' '" + path + "'").constData()), 0);
    EXPECT_FALSE(isDrawn(plain));
}

TEST_F(PreviewLoaderTest, PhotoOfTooManyPixelsIsRefusedAtOnce)
{
    // A progressive photo keeps all of itself in memory, however small it is shown.
    auto const header = QByteArray::fromHex("ffd8ffc20011087530753003011100021100031100ffda000c03010002000300000000");
    EXPECT_EQ(note(files_.write("a.jpg", header)), "The picture is too large to be shown.");
}

TEST_F(PreviewLoaderTest, PictureOfTooManyPixelsIsRefusedAtOnce)
{
    auto const begin = std::chrono::steady_clock::now();
    EXPECT_EQ(note(files_.write("a.png", pngHeader({ 30'000, 30'000 }))), "The picture is too large to be shown.");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
}

TEST_F(PreviewLoaderTest, DamagedPictureIsACard)
{
    EXPECT_EQ(note(files_.write("a.png", pngHeader({ 30, 30 }))), "The picture cannot be shown.");
    EXPECT_EQ(note(files_.write("b.png", QByteArray("\x89PNG\r\n\x1a\n"))), "The picture cannot be shown.");
}

TEST_F(PreviewLoaderTest, TheContentDecidesAndNotTheName)
{
    shown<ImageContent>(files_.write("picture.txt", imageFile("png", twoColours({ 20, 10 }))));
    shown<PdfContent>(files_.write("document.txt", pdfPages({ "Text" })));
    EXPECT_EQ(shown<TextContent>(files_.write("text.png", "These are words.\n")).text, u"These are words.\n"_qs);
    EXPECT_EQ(shown<TextContent>(files_.write("noextension", "These are words.\n")).text, u"These are words.\n"_qs);
    QByteArray noise;
    for (int i = 0; i < 4096; ++i)
        noise += static_cast<char>(i * 7 % 32);
    EXPECT_EQ(note(files_.write("binary.txt", noise)), "");
    EXPECT_EQ(note(files_.write("zeros.txt", QByteArray(4096, '\0'))), "");
    QFile program(QStringLiteral("/proc/self/exe"));
    ASSERT_TRUE(program.open(QIODevice::ReadOnly));
    EXPECT_EQ(note(files_.write("program.txt", program.read(100'000))), "");
}

TEST_F(PreviewLoaderTest, TextsWithFewControlCharactersAreTexts)
{
    EXPECT_EQ(shown<TextContent>(files_.write("a.txt", QByteArray("ten letters\0 and more", 21))).text,
        u"ten letters\u2400 and more"_qs);
    EXPECT_EQ(shown<TextContent>(files_.write("b.txt",
                                     QByteArray("\xFF\xFE"
                                                "a\0b\0",
                                         6)))
                  .text,
        u"ab"_qs);
    EXPECT_EQ(shown<TextContent>(files_.write("c.json", "{ \"a\": 1 }\n")).text, u"{ \"a\": 1 }\n"_qs);
}

TEST_F(PreviewLoaderTest, OnlyTheBeginningOfALargeTextIsRead)
{
    qsizetype const mebibyte = 1024 * 1024;
    auto const text = QByteArray("0123456\n").repeated(mebibyte / 8 + 1);
    auto const begin = std::chrono::steady_clock::now();
    auto const content = shown<TextContent>(files_.writeSparse("a.txt", text, 5'000'000'000));
    EXPECT_EQ(content.text.size(), mebibyte);
    EXPECT_TRUE(content.isBeginning);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
    EXPECT_FALSE(shown<TextContent>(files_.write("b.txt", text.first(mebibyte))).isBeginning);
}

TEST_F(PreviewLoaderTest, DocumentsThatCannotBeShownSayWhy)
{
    auto const whole = pdfPages({ "Text" });
    EXPECT_EQ(note(files_.write("a.pdf", whole.first(60))), "The document is damaged.");
    QByteArray const key = '<' + QByteArray("5a").repeated(32) + '>';
    EXPECT_EQ(
        note(files_.write("b.pdf",
            pdfPages({ "Secret" },
                "/ID [<00> <00>] /Encrypt << /Filter /Standard /V 1 /R 2 /P -4 /O " + key + " /U " + key + " >>"))),
        "The document is protected by a password.");
}

TEST_F(PreviewLoaderTest, FolderTellsItsItems)
{
    auto const url = files_.makeFolder("folder");
    EXPECT_EQ(load(url).facts.size, u"0 items"_qs);
    files_.write("folder/one", "");
    EXPECT_EQ(load(url).facts.size, u"1 item"_qs);
    files_.write("folder/.two", "");
    auto const content = load(url);
    EXPECT_EQ(content.facts.size, u"2 items"_qs);
    EXPECT_EQ(content.facts.kind, u"folder"_qs);
    EXPECT_NE(content.facts.date, QString());
    EXPECT_EQ(note(url), "");
}

TEST_F(PreviewLoaderTest, FolderOfManyItemsIsCounted)
{
    auto const url = files_.makeFolder("folder");
    int const folder = ::open(url.path().c_str(), O_DIRECTORY | O_CLOEXEC);
    for (int i = 0; i < 100'000; ++i)
        ASSERT_EQ(::symlinkat("x", folder, std::to_string(i).c_str()), 0);
    ::close(folder);
    auto const begin = std::chrono::steady_clock::now();
    EXPECT_EQ(load(url).facts.size, u"100000 items"_qs);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
    EXPECT_TRUE(load(url, 1, 0ms).facts.size.startsWith(u"more than"_qs));
}

TEST_F(PreviewLoaderTest, WhatIsNoRegularFileIsNotWaitedFor)
{
    auto const begin = std::chrono::steady_clock::now();
    EXPECT_EQ(note(files_.makeFifo("fifo.txt")), "");
    EXPECT_EQ(note(FileURL("/dev/zero")), "");
    EXPECT_EQ(note(files_.url("nowhere")), "The item cannot be read.");
    ASSERT_EQ(::symlink("nowhere", files_.url("dangling").path().c_str()), 0);
    EXPECT_EQ(note(files_.url("dangling")), "The item cannot be read.");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
}

TEST_F(PreviewLoaderTest, FileThatMayNotBeReadSaysSo)
{
    auto const url = files_.write("secret.txt", "words\n");
    ASSERT_EQ(::chmod(url.path().c_str(), 0), 0);
    EXPECT_EQ(askedWithoutPrivileges([&] { return note(url); }), "The item cannot be read.");
}

TEST_F(PreviewLoaderTest, LinkShowsWhatItLeadsTo)
{
    files_.write("text.txt", "words\n");
    ASSERT_EQ(::symlink("text.txt", files_.url("link").path().c_str()), 0);
    auto const content = load(files_.url("link"));
    EXPECT_TRUE(std::holds_alternative<TextContent>(content.shown));
    EXPECT_EQ(content.facts.size, u"6 bytes"_qs);
}

TEST_F(PreviewLoaderTest, LoadingThatWasCancelledReadsNothing)
{
    auto const url = files_.write("a.png", imageFile("png", twoColours({ 2000, 2000 })));
    LoadLimit const reached(0ms);
    EXPECT_TRUE(reached.isReached());
    EXPECT_TRUE(std::holds_alternative<CardContent>(load(url, 1, 0ms).shown));
}

}
}
