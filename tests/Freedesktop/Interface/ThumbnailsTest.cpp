#include "Freedesktop/Interface/FreedesktopThumbnails.h"

#include "Freedesktop/Interface/Bitmaps.h"
#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/Icons.h"
#include "Freedesktop/Interface/SessionSupport.h"
#include "Freedesktop/Interface/ThumbnailCache.h"

#include <QDBusConnection>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <vector>

namespace marrowick {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST(ThumbnailCacheTest, ThumbnailsAreNamedByTheSumOfTheAddress)
{
    ThumbnailCache const cache("/cache/thumbnails");
    EXPECT_EQ(cache.pathOf("file:///home/jens/photos/me.png", flavorFor(128)),
        "/cache/thumbnails/normal/c6ee772d9e49320e97ec29a7eb5b1697.png");
    EXPECT_EQ(cache.pathOf("file:///home/jens/photos/me.png", flavorFor(129)),
        "/cache/thumbnails/large/c6ee772d9e49320e97ec29a7eb5b1697.png");
}

TEST(ThumbnailCacheTest, FlavorsThatAreLargeEnoughComeFirst)
{
    auto const names = [](int pixels) {
        std::vector<std::string> found;
        for (auto const& flavor : flavorsByPreference(pixels))
            found.emplace_back(flavor.name);
        return found;
    };
    EXPECT_THAT(names(96), ElementsAre("normal", "large", "x-large", "xx-large"));
    EXPECT_THAT(names(192), ElementsAre("large", "x-large", "xx-large", "normal"));
    EXPECT_THAT(names(300), ElementsAre("x-large", "xx-large", "large", "normal"));
    EXPECT_THAT(names(5000), ElementsAre("xx-large", "x-large", "large", "normal"));
}

QImage plain(QColor const& colour, int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(colour);
    return image;
}

QColor centreOf(QImage const& image)
{
    return image.pixelColor(image.width() / 2, image.height() / 2);
}

/// What a thumbnail says of the file that it shows.
struct Claims {
    QByteArray uri;
    QString modificationTime;
};

class ThumbnailsTest : public testing::Test {
protected:
    ThumbnailsTest()
    {
        prepareIconTheme(log_);
        QDir(cacheFolder()).removeRecursively();
    }

    static QString cacheFolder() { return qEnvironmentVariable("XDG_CACHE_HOME") + QStringLiteral("/thumbnails"); }

    QByteArray pathOf(QByteArray const& name) const { return QFile::encodeName(folder_.path()) + '/' + name; }

    FileURL write(QByteArray const& name, QByteArray const& content) const
    {
        QFile file(QFile::decodeName(pathOf(name)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return fileURLFrom(pathOf(name));
    }

    FileURL writePicture(char const* name, QImage const& image) const
    {
        EXPECT_TRUE(image.save(QFile::decodeName(pathOf(name))));
        return fileURLFrom(pathOf(name));
    }

    static QByteArray uriOf(FileURL const& url)
    {
        return QUrl::fromLocalFile(QFile::decodeName(pathBytes(url))).toEncoded(QUrl::FullyEncoded);
    }

    static Claims truthOf(FileURL const& url)
    {
        auto const time = QFileInfo(QFile::decodeName(pathBytes(url))).lastModified().toSecsSinceEpoch();
        return { uriOf(url), QString::number(time) };
    }

    static QString thumbnailPath(QByteArray const& uri, int side)
    {
        auto const path = QFile::decodeName(ThumbnailCache().pathOf(uri, flavorFor(side)));
        QDir().mkpath(QFileInfo(path).path());
        return path;
    }

    static void putIntoCache(FileURL const& url, QColor const& colour, int side, std::optional<Claims> claims = {})
    {
        auto const said = claims.value_or(truthOf(url));
        auto image = plain(colour, side, side / 2);
        if (!said.uri.isEmpty())
            image.setText(QStringLiteral("Thumb::URI"), QString::fromLatin1(said.uri));
        if (!said.modificationTime.isEmpty())
            image.setText(QStringLiteral("Thumb::MTime"), said.modificationTime);
        EXPECT_TRUE(image.save(thumbnailPath(uriOf(url), side)));
    }

    /// The picture that comes, which must be one and must come later.
    QImage pictureOf(FileURL const& url, double scale = 1, int pointSize = 96)
    {
        std::vector<std::optional<Bitmap>> came;
        thumbnails_->generate(
            url, pointSize, scale, [&](std::optional<Bitmap> const& picture) { came.push_back(picture); });
        EXPECT_TRUE(came.empty());
        EXPECT_TRUE(waitFor([&] { return !came.empty(); }));
        EXPECT_EQ(came.size(), 1U);
        if (came.empty() || !came.front())
            return {};
        auto const image = imageFrom(*came.front());
        EXPECT_FALSE(image.isNull());
        EXPECT_LE(std::max(image.width(), image.height()), static_cast<int>(pointSize * scale));
        return image;
    }

    static QImage iconOf(FileURL const& url)
    {
        auto const image = iconFor(Image::iconForFile(url, 96)).pixmap(QSize(96, 96), 1.0).toImage();
        return imageFrom(bitmapFrom(image));
    }

    QTemporaryDir folder_;
    RecordingLog log_;
    std::shared_ptr<DeliveryGate> gate_ = std::make_shared<DeliveryGate>();
    std::unique_ptr<FreedesktopThumbnails> thumbnails_ = std::make_unique<FreedesktopThumbnails>(gate_, 300ms);
};

TEST_F(ThumbnailsTest, WhatTheCacheHasIsTaken)
{
    auto const url = write("a film, 100% & ä.mp4", "not really");
    putIntoCache(url, Qt::red, 128);
    auto const picture = pictureOf(url);
    EXPECT_EQ(picture.size(), QSize(96, 48));
    EXPECT_EQ(centreOf(picture), QColor(Qt::red));
}

TEST_F(ThumbnailsTest, TheScaleChoosesTheFlavor)
{
    auto const url = write("film.mp4", "not really");
    putIntoCache(url, Qt::red, 128);
    putIntoCache(url, Qt::blue, 256);
    EXPECT_EQ(centreOf(pictureOf(url, 1)), QColor(Qt::red));
    auto const picture = pictureOf(url, 2);
    EXPECT_EQ(centreOf(picture), QColor(Qt::blue));
    EXPECT_EQ(picture.width(), 192);
}

TEST_F(ThumbnailsTest, ALargerFlavorServesAndASmallerOneIsBetterThanAnIcon)
{
    auto const large = write("large.mp4", "not really");
    putIntoCache(large, Qt::blue, 256);
    EXPECT_EQ(centreOf(pictureOf(large)), QColor(Qt::blue));
    auto const normal = write("normal.mp4", "not really");
    putIntoCache(normal, Qt::red, 128);
    auto const picture = pictureOf(normal, 2);
    EXPECT_EQ(centreOf(picture), QColor(Qt::red));
    EXPECT_EQ(picture.width(), 128);
}

TEST_F(ThumbnailsTest, ThumbnailsOfAnotherTimeOrFileAreLeft)
{
    auto const url = write("film.mp4", "not really");
    auto const truth = truthOf(url);
    auto const earlier = QString::number(truth.modificationTime.toLongLong() - 1);
    for (auto const& claims :
        { Claims { truth.uri, earlier }, { truth.uri, QString() }, { truth.uri, QStringLiteral("soon") },
            { "file:///somewhere/else.mp4", truth.modificationTime }, { "", truth.modificationTime } }) {
        putIntoCache(url, Qt::red, 128, claims);
        EXPECT_EQ(pictureOf(url), iconOf(url))
            << claims.uri.constData() << ' ' << claims.modificationTime.toStdString();
    }
    putIntoCache(url, Qt::red, 128, truth);
    EXPECT_EQ(centreOf(pictureOf(url)), QColor(Qt::red));
}

TEST_F(ThumbnailsTest, BrokenThumbnailsAreLeft)
{
    auto const url = write("film.mp4", "not really");
    auto const uri = uriOf(url);
    auto const path = thumbnailPath(uri, 128);

    putIntoCache(url, Qt::red, 128);
    QFile file(path);
    ASSERT_TRUE(file.resize(60));
    EXPECT_EQ(pictureOf(url), iconOf(url));
    ASSERT_TRUE(file.resize(0));
    EXPECT_EQ(pictureOf(url), iconOf(url));

    // A size that no thumbnail of the flavor has.
    putIntoCache(url, Qt::red, 1024);
    ASSERT_TRUE(file.remove());
    ASSERT_TRUE(QFile::rename(thumbnailPath(uri, 1024), path));
    EXPECT_EQ(pictureOf(url), iconOf(url));

    ASSERT_TRUE(file.remove());
    ASSERT_EQ(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    EXPECT_EQ(pictureOf(url), iconOf(url));
}

TEST_F(ThumbnailsTest, APictureIsReadItself)
{
    auto const wide = writePicture("wide.jpg", plain(Qt::green, 600, 300));
    EXPECT_EQ(pictureOf(wide).size(), QSize(96, 48));
    EXPECT_EQ(pictureOf(wide, 2).size(), QSize(192, 96));
    EXPECT_EQ(centreOf(pictureOf(writePicture("tall.png", plain(Qt::blue, 30, 3000)))), QColor(Qt::blue));
    EXPECT_EQ(pictureOf(writePicture("small.png", plain(Qt::blue, 20, 10))).size(), QSize(20, 10));
    EXPECT_EQ(centreOf(pictureOf(writePicture("wrong name.bmp.txt.png", plain(Qt::red, 200, 200)))), QColor(Qt::red));
    auto const half = pictureOf(writePicture("half.png", plain(QColor(255, 0, 0, 128), 200, 200)));
    EXPECT_EQ(centreOf(half), QColor(255, 0, 0, 128));
    auto const drawing = write("drawing.svg",
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16\" height=\"8\"><rect width=\"16\" height=\"8\" "
        "fill=\"#00f\"/></svg>");
    EXPECT_EQ(pictureOf(drawing).size(), QSize(96, 48));
    EXPECT_EQ(centreOf(pictureOf(drawing)), QColor(Qt::blue));
}

TEST_F(ThumbnailsTest, ALinkShowsWhatItLeadsTo)
{
    writePicture("picture.png", plain(Qt::blue, 200, 200));
    ASSERT_EQ(symlink("picture.png", pathOf("link").constData()), 0);
    EXPECT_EQ(centreOf(pictureOf(fileURLFrom(pathOf("link")))), QColor(Qt::blue));
}

QByteArray pngHeader(quint32 width, quint32 height)
{
    QByteArray header("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR", 16);
    QByteArray content;
    for (auto const side : { width, height }) {
        for (int shift = 24; shift >= 0; shift -= 8)
            content.append(static_cast<char>(side >> shift & 0xFF));
    }
    content.append("\x08\x06\0\0\0", 5);
    quint32 sum = 0xFFFFFFFF;
    for (auto const byte : QByteArray("IHDR") + content) {
        sum ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = sum & 1 ? sum >> 1 ^ 0xEDB88320 : sum >> 1;
    }
    sum = ~sum;
    header += content;
    for (int shift = 24; shift >= 0; shift -= 8)
        header.append(static_cast<char>(sum >> shift & 0xFF));
    return header + QByteArray("\0\0\0\x08IDAT", 8) + QByteArray(8, '\x78');
}

TEST_F(ThumbnailsTest, PicturesThatWouldTakeMuchShowTheirIcon)
{
    auto const huge = write("huge.png", pngHeader(30'000, 30'000));
    EXPECT_EQ(pictureOf(huge), iconOf(huge));
    auto const photo = write(
        "huge.jpg", QByteArray::fromHex("ffd8ffc20011087530753003011100021100031100ffda000c03010002000300000000"));
    EXPECT_EQ(pictureOf(photo), iconOf(photo));
    QByteArray bomb = "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
                      "width=\"16\" height=\"16\"><g id=\"a0\"><rect width=\"1\" height=\"1\"/></g>";
    for (int i = 1; i < 40; ++i) {
        auto const below = QByteArray::number(i - 1);
        bomb += "<g id=\"a" + QByteArray::number(i) + "\"><use xlink:href=\"#a" + below + "\"/><use xlink:href=\"#a"
            + below + "\"/></g>";
    }
    auto const drawing = write("bomb.svg", bomb + "</svg>");
    EXPECT_EQ(pictureOf(drawing), iconOf(drawing));
}

TEST_F(ThumbnailsTest, TruncatedAndDamagedPicturesDoNoHarm)
{
    auto const whole = writePicture("whole.png", plain(Qt::red, 300, 300));
    QFile file(QFile::decodeName(pathBytes(whole)));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    auto const content = file.readAll();
    for (qsizetype length = 0; length < content.size(); length += std::max<qsizetype>(1, content.size() / 8)) {
        auto const cut = write("cut " + QByteArray::number(length) + ".png", content.left(length));
        EXPECT_FALSE(pictureOf(cut).isNull());
    }
    for (auto const* other : { "", "text" }) {
        auto const url = write("other.png", other);
        EXPECT_EQ(pictureOf(url), iconOf(url));
    }
}

TEST_F(ThumbnailsTest, WhatIsNoFileShowsItsIconAndIsNotWaitedFor)
{
    auto const fifo = pathOf("fifo.png");
    ASSERT_EQ(mkfifo(fifo.constData(), 0600), 0);
    auto const folder = pathOf("folder.png");
    ASSERT_EQ(mkdir(folder.constData(), 0700), 0);
    for (auto const& path :
        { fifo, folder, pathOf("missing.png"), QByteArray("/dev/zero"), QByteArray("relative"), QByteArray() })
        EXPECT_EQ(pictureOf(fileURLFrom(path)), iconOf(fileURLFrom(path))) << path.constData();
}

TEST_F(ThumbnailsTest, PicturesComeThroughTheGate)
{
    auto const url = writePicture("picture.png", plain(Qt::blue, 200, 200));
    int count = 0;
    auto closure = std::make_unique<DeliveryGate::Closure>(*gate_);
    thumbnails_->generate(url, 96, 1, [&](std::optional<Bitmap> const&) { ++count; });
    QElapsedTimer timer;
    timer.start();
    waitFor([&] { return timer.elapsed() > 600; });
    EXPECT_EQ(count, 0);
    closure.reset();
    EXPECT_TRUE(waitFor([&] { return count == 1; }));
}

TEST_F(ThumbnailsTest, AfterTheEndNothingComesAndTheEndDoesNotWait)
{
    QImage noise(4000, 4000, QImage::Format_RGB32);
    for (int y = 0; y < noise.height(); ++y) {
        for (int x = 0; x < noise.width(); ++x)
            noise.setPixel(x, y, static_cast<QRgb>(x * 2654435761U ^ y * 40503U));
    }
    auto const url = writePicture("noise.png", noise);
    int count = 0;
    for (auto const pause : { 0ms, 320ms, 400ms }) {
        for (int i = 0; i < 10; ++i)
            thumbnails_->generate(url, 96, 1, [&](std::optional<Bitmap> const&) { ++count; });
        auto const until = std::chrono::steady_clock::now() + pause;
        waitFor([&] { return std::chrono::steady_clock::now() >= until; });
        auto const before = count;
        QElapsedTimer timer;
        timer.start();
        thumbnails_.reset();
        EXPECT_LT(timer.elapsed(), 1500);
        thumbnails_ = std::make_unique<FreedesktopThumbnails>(gate_, 300ms);
        pictureOf(write("other.txt", "text"));
        EXPECT_EQ(count, before);
    }
}

/// A thumbnailer on the session's bus, which does what the test says.
class FakeThumbnailer : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.thumbnails.Thumbnailer1")

public:
    FakeThumbnailer()
        : connection_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("fake thumbnailer")))
    {
        connection_.registerObject(QStringLiteral("/org/freedesktop/thumbnails/Thumbnailer1"), this,
            QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
        EXPECT_TRUE(connection_.registerService(QStringLiteral("org.freedesktop.thumbnails.Thumbnailer1")));
    }
    ~FakeThumbnailer() override
    {
        connection_.unregisterService(QStringLiteral("org.freedesktop.thumbnails.Thumbnailer1"));
        QDBusConnection::disconnectFromBus(QStringLiteral("fake thumbnailer"));
    }

    /// What it was asked for, as "address type flavor".
    std::vector<QString> asked;
    /// Run for a question, with its handle; the signals are sent before the answer.
    std::function<void(uint handle, QStringList const& uris)> answer;

public Q_SLOTS:
    uint Queue(QStringList const& uris, QStringList const& types, QString const& flavor, QString const&, uint)
    {
        asked.push_back(uris.join(u',') + u' ' + types.join(u',') + u' ' + flavor);
        auto const handle = static_cast<uint>(asked.size());
        if (answer)
            answer(handle, uris);
        return handle;
    }

Q_SIGNALS:
    void Ready(uint handle, QStringList const& uris);
    void Error(uint handle, QStringList const& uris, int code, QString const& message);
    void Finished(uint handle);

private:
    QDBusConnection connection_;
};

class DesktopThumbnailerTest : public ThumbnailsTest {
protected:
    DesktopThumbnailerTest() { thumbnails_ = std::make_unique<FreedesktopThumbnails>(gate_, 10s); }

    FakeThumbnailer thumbnailer_;
};

TEST_F(DesktopThumbnailerTest, IsAskedForWhatTheCacheLacksAndItsThumbnailIsShown)
{
    auto const url = write("film.mp4", "not really");
    for (bool const isFinishedOnly : { false, true }) {
        QDir(cacheFolder()).removeRecursively();
        thumbnailer_.asked.clear();
        thumbnailer_.answer = [&](uint handle, QStringList const& uris) {
            QTimer::singleShot(20ms, &thumbnailer_, [=, this] {
                putIntoCache(url, Qt::red, 256);
                if (!isFinishedOnly)
                    Q_EMIT thumbnailer_.Ready(handle, uris);
                Q_EMIT thumbnailer_.Finished(handle);
            });
        };
        EXPECT_EQ(centreOf(pictureOf(url, 2)), QColor(Qt::red));
        EXPECT_THAT(
            thumbnailer_.asked, ElementsAre(QString::fromLatin1(uriOf(url)) + QStringLiteral(" video/mp4 large")));
        pictureOf(url, 2);
        EXPECT_EQ(thumbnailer_.asked.size(), 1U);
    }
}

TEST_F(DesktopThumbnailerTest, MayFinishBeforeItAnswers)
{
    auto const url = write("film.mp4", "not really");
    thumbnailer_.answer = [&](uint handle, QStringList const&) {
        putIntoCache(url, Qt::red, 128);
        Q_EMIT thumbnailer_.Finished(handle);
    };
    EXPECT_EQ(centreOf(pictureOf(url)), QColor(Qt::red));
}

TEST_F(DesktopThumbnailerTest, WhereItFailsThePictureItselfIsRead)
{
    auto const url = writePicture("picture.png", plain(Qt::blue, 200, 200));
    thumbnailer_.answer = [&](uint handle, QStringList const& uris) {
        Q_EMIT thumbnailer_.Error(handle, uris, 0, QStringLiteral("unsupported"));
    };
    EXPECT_EQ(centreOf(pictureOf(url)), QColor(Qt::blue));
    auto const film = write("film.mp4", "not really");
    EXPECT_EQ(pictureOf(film), iconOf(film));
    // What it says of other files is of no interest.
    thumbnailer_.answer = [&](uint handle, QStringList const& uris) {
        Q_EMIT thumbnailer_.Error(handle + 100, { QStringLiteral("file:///else") }, 0, QString());
        QTimer::singleShot(20ms, &thumbnailer_, [=, this] {
            putIntoCache(film, Qt::red, 128);
            Q_EMIT thumbnailer_.Ready(handle, uris);
        });
    };
    EXPECT_EQ(centreOf(pictureOf(film)), QColor(Qt::red));
}

TEST_F(DesktopThumbnailerTest, IsNotWaitedForLongerThanTheDeadline)
{
    thumbnails_ = std::make_unique<FreedesktopThumbnails>(gate_, 300ms);
    auto const url = writePicture("picture.png", plain(Qt::blue, 200, 200));
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(centreOf(pictureOf(url)), QColor(Qt::blue));
    EXPECT_GE(timer.elapsed(), 290);
    EXPECT_EQ(thumbnailer_.asked.size(), 1U);
}

TEST_F(DesktopThumbnailerTest, IsNotAskedForWhatIsNoFile)
{
    auto const folder = pathOf("folder");
    ASSERT_EQ(mkdir(folder.constData(), 0700), 0);
    pictureOf(fileURLFrom(folder));
    pictureOf(fileURLFrom(pathOf("missing")));
    EXPECT_TRUE(thumbnailer_.asked.empty());
}

}
}

#include "ThumbnailsTest.moc"
