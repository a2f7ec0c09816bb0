#include "Freedesktop/Interface/Icons.h"

#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/FileIcons.h"
#include "Freedesktop/Interface/Pictures.h"
#include "Freedesktop/Interface/SessionSupport.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QPalette>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

namespace marrowick {
namespace {

QImage pixels(QIcon const& icon, qreal scale = 1, QIcon::Mode mode = QIcon::Normal)
{
    return icon.pixmap(QSize(16, 16), scale, mode).toImage().convertToFormat(QImage::Format_ARGB32);
}

bool showsSomething(QImage const& image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 100)
                return true;
        }
    }
    return false;
}

/// The mean of the solid pixels' grey values.
int meanGrey(QImage const& image)
{
    int sum = 0;
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) > 200) {
                sum += qGray(image.pixel(x, y));
                ++count;
            }
        }
    }
    return count ? sum / count : -1;
}

constexpr char const* symbols[] = { "arrowtriangle.down.square", "square.grid.2x2", "menubar.dock.rectangle",
    "square.stack.3d.up", "gearshape", "clock", "doc", "folder", "app" };

TEST(SymbolIconTest, EachSymbolIsDrawnAtAnyScale)
{
    for (auto const* name : symbols) {
        for (qreal const scale : { 1.0, 1.5, 2.0 }) {
            auto const image = pixels(iconFor(Image::systemSymbol(name)), scale);
            EXPECT_EQ(image.width(), static_cast<int>(16 * scale)) << name;
            EXPECT_TRUE(showsSomething(image)) << name;
        }
    }
}

TEST(SymbolIconTest, AnUnknownSymbolIsNoPicture)
{
    EXPECT_FALSE(showsSomething(pixels(iconFor(Image::systemSymbol("no.such.symbol")))));
    EXPECT_FALSE(showsSomething(pixels(iconFor(Image::systemSymbol("../symbols/no")))));
}

TEST(SymbolIconTest, TheColourFollowsThePalette)
{
    QPalette const before = QApplication::palette();
    QPalette light = before;
    light.setColor(QPalette::Text, Qt::black);
    QPalette dark = before;
    dark.setColor(QPalette::Text, Qt::white);
    auto const icon = iconFor(Image::systemSymbol("gearshape"));
    QApplication::setPalette(light);
    int const onLight = meanGrey(pixels(icon, 2));
    QApplication::setPalette(dark);
    int const onDark = meanGrey(pixels(icon, 2));
    QApplication::setPalette(before);
    EXPECT_LT(onLight, 20);
    EXPECT_GT(onDark, 235);
}

class FileIconTest : public testing::Test {
protected:
    FileIconTest() { prepareIconTheme(log_); }

    FileURL write(QByteArray const& name, QByteArray const& content = "text\n")
    {
        auto const path = pathOf(name);
        QFile file(QFile::decodeName(path));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return fileURLFrom(path);
    }

    FileURL makeFolder(QByteArray const& name)
    {
        auto const path = pathOf(name);
        EXPECT_EQ(mkdir(path.constData(), 0755), 0);
        return fileURLFrom(path);
    }

    FileURL link(QByteArray const& name, QByteArray const& target)
    {
        auto const path = pathOf(name);
        EXPECT_EQ(symlink(target.constData(), path.constData()), 0);
        return fileURLFrom(path);
    }

    QByteArray pathOf(QByteArray const& name) const { return QFile::encodeName(folder_.path()) + '/' + name; }

    static QImage pixelsOf(FileURL const& url) { return pixels(iconFor(Image::iconForFile(url, 16))); }
    static QImage themed(char const* name) { return pixels(QIcon::fromTheme(QLatin1String(name))); }

    QTemporaryDir folder_;
    RecordingLog log_;
};

TEST_F(FileIconTest, MakingAnIconReadsNothing)
{
    auto const url = FileURL(pathOf("later.txt").toStdString());
    auto const icon = iconFor(Image::iconForFile(url, 16));
    EXPECT_FALSE(icon.isNull());
    EXPECT_EQ(icon.actualSize(QSize(16, 16)), QSize(16, 16));
    makeFolder("later.txt");
    EXPECT_EQ(pixels(icon), themed("inode-directory"));
}

TEST_F(FileIconTest, FilesShowTheIconOfTheirType)
{
    EXPECT_EQ(pixelsOf(makeFolder("folder")), themed("inode-directory"));
    EXPECT_EQ(pixelsOf(write("a.png", "\x89PNG\r\n\x1a\n")), themed("image-x-generic"));
    EXPECT_EQ(pixelsOf(write("a.txt")), themed("text-x-generic"));
    EXPECT_EQ(pixelsOf(write("bytes\xff.txt")), themed("text-x-generic"));
}

TEST_F(FileIconTest, ALinkShowsWhatItLeadsTo)
{
    makeFolder("folder");
    EXPECT_EQ(pixelsOf(link("link", "folder")), themed("inode-directory"));
    EXPECT_TRUE(showsSomething(pixelsOf(link("dangling", "nowhere"))));
    EXPECT_TRUE(showsSomething(pixelsOf(link("circle", "circle"))));
}

TEST_F(FileIconTest, ADesktopEntryShowsItsOwnIcon)
{
    auto const entry = [](QByteArray const& icon) {
        return "[Desktop Entry]\nType=Application\nName=X\nExec=true\nIcon=" + icon + "\n";
    };
    EXPECT_EQ(pixelsOf(write("named.desktop", entry("folder"))), themed("folder"));
    EXPECT_EQ(pixelsOf(write("suffix.desktop", entry("folder.png"))), themed("folder"));

    QImage red(32, 32, QImage::Format_ARGB32);
    red.fill(Qt::red);
    ASSERT_TRUE(red.save(QFile::decodeName(pathOf("red.png"))));
    EXPECT_EQ(pixelsOf(write("path.desktop", entry(pathOf("red.png")))).pixel(8, 8), qRgb(255, 0, 0));

    auto const application = themed("application-x-executable");
    for (QByteArray const icon : { "no-such-icon-anywhere", "", "../../etc/passwd", "/nonexistent.png" })
        EXPECT_EQ(pixelsOf(write("other.desktop", entry(icon))), application) << icon.constData();
    EXPECT_EQ(pixelsOf(write("broken.desktop", "\xff\xfe[[[")), application);
}

TEST_F(FileIconTest, AChangedDesktopEntryShowsItsOtherIcon)
{
    auto const entry = [](QByteArray const& icon) {
        return "[Desktop Entry]\nType=Application\nName=X\nExec=true\nIcon=" + icon + "\n";
    };
    auto const url = write("entry.desktop", entry("user-home"));
    EXPECT_EQ(pixelsOf(url), themed("user-home"));
    EXPECT_EQ(pixelsOf(url), themed("user-home"));
    // As long as the first one.
    ASSERT_TRUE(showsSomething(themed("text-html")));
    ASSERT_NE(themed("user-home"), themed("text-html"));
    write("other.desktop", entry("text-html"));
    ASSERT_EQ(rename(pathOf("other.desktop").constData(), pathOf("entry.desktop").constData()), 0);
    EXPECT_EQ(pixelsOf(url), themed("text-html"));
    ASSERT_EQ(unlink(pathOf("entry.desktop").constData()), 0);
    EXPECT_NE(pixelsOf(url), themed("text-html"));
    makeFolder("entry.desktop");
    EXPECT_EQ(pixelsOf(url), themed("inode-directory"));
}

TEST_F(FileIconTest, AnAppFolderShowsAnApplication)
{
    EXPECT_EQ(pixelsOf(makeFolder("Editor.app")), themed("application-x-executable"));
    EXPECT_EQ(pixelsOf(makeFolder("Shout.APP")), themed("application-x-executable"));
}

TEST_F(FileIconTest, SpecialFilesAreNotWaitedFor)
{
    auto const fifo = pathOf("fifo.desktop");
    ASSERT_EQ(mkfifo(fifo.constData(), 0600), 0);
    EXPECT_TRUE(showsSomething(pixelsOf(fileURLFrom(fifo))));
    auto const entry = write("entry.desktop", "[Desktop Entry]\nType=Application\nName=X\nIcon=" + fifo + "\n");
    EXPECT_TRUE(showsSomething(pixelsOf(entry)));
    EXPECT_TRUE(showsSomething(pixelsOf(FileURL("/dev/zero"))));
    EXPECT_TRUE(showsSomething(pixelsOf(FileURL("/nonexistent"))));
    EXPECT_TRUE(showsSomething(pixelsOf(FileURL(""))));
}

TEST_F(FileIconTest, PicturesThatWouldTakeLongAreRefused)
{
    QByteArray bomb = "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
                      "width=\"16\" height=\"16\"><defs><rect id=\"a0\" width=\"1\" height=\"1\"/>";
    for (int i = 1; i < 40; ++i) {
        auto const below = QByteArray::number(i - 1);
        bomb += "<g id=\"a" + QByteArray::number(i) + "\"><use xlink:href=\"#a" + below + "\"/><use xlink:href=\"#a"
            + below + "\"/></g>";
    }
    bomb += "</defs><use xlink:href=\"#a39\"/></svg>";
    QByteArray deep = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16\" height=\"16\">";
    deep += QByteArray("<g>").repeated(100'000) + QByteArray("</g>").repeated(100'000) + "</svg>";
    for (auto const& content : { bomb, deep }) {
        auto const path = pathBytes(write("bomb.svg", content));
        EXPECT_TRUE(pictureIcon(path.constData()).isNull());
    }
    auto const harmless = pathBytes(write("fine.svg",
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16\" height=\"16\"><rect width=\"16\" "
        "height=\"16\"/></svg>"));
    EXPECT_TRUE(showsSomething(pixels(pictureIcon(harmless.constData()))));
}

TEST_F(FileIconTest, WithoutAnyThemeTheLogSaysSoAndDrawingsStandIn)
{
    auto const paths = QIcon::themeSearchPaths();
    auto const fallbackPaths = QIcon::fallbackSearchPaths();
    auto const theme = QIcon::themeName();
    QIcon::setThemeSearchPaths({ folder_.path() });
    QIcon::setFallbackSearchPaths({});
    QIcon::setThemeName(QStringLiteral("none"));
    prepareIconTheme(log_);
    ASSERT_EQ(log_.lines().size(), 1U);
    EXPECT_EQ(log_.lines()[0].rfind("Marrowick: ", 0), 0U);
    EXPECT_EQ(pixelsOf(makeFolder("folder")), pixels(iconFor(Image::systemSymbol("folder"))));
    EXPECT_EQ(pixelsOf(write("a.txt")), pixels(iconFor(Image::systemSymbol("doc"))));
    EXPECT_EQ(pixelsOf(makeFolder("X.app")), pixels(iconFor(Image::systemSymbol("app"))));
    QIcon::setThemeSearchPaths(paths);
    QIcon::setFallbackSearchPaths(fallbackPaths);
    QIcon::setThemeName(theme);
}

TEST_F(FileIconTest, WithAThemeTheLogIsSilent)
{
    EXPECT_TRUE(log_.lines().empty());
    EXPECT_TRUE(showsSomething(themed("folder")));
}

}
}
