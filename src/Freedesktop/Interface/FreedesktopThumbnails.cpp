#include "Freedesktop/Interface/FreedesktopThumbnails.h"

#include "Freedesktop/GLibOwners.h"
#include "Freedesktop/Interface/Bitmaps.h"
#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/Icons.h"
#include "Freedesktop/Interface/ThumbnailCache.h"
#include "Freedesktop/Interface/ThumbnailImage.h"

#include <QPixmap>
#include <QPointer>
#include <QThreadPool>
#include <QTimer>

#include <sys/stat.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <mutex>
#include <utility>

namespace marrowick {

namespace {

constexpr int workerCount = 2;
/// Less than a picture of the display takes.
constexpr int headStartMilliseconds = 10;
/// A disk that does not answer keeps nobody from ending the program.
constexpr int patienceAtEndMilliseconds = 2000;

QByteArray contentTypeOf(QByteArray const& path)
{
    GObjectOwner<GFile> const file(g_file_new_for_path(path.constData()));
    GObjectOwner<GFileInfo> const info(g_file_query_info(
        file.get(), G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE, G_FILE_QUERY_INFO_NONE, nullptr, nullptr));
    return info ? g_file_info_get_attribute_string(info.get(), G_FILE_ATTRIBUTE_STANDARD_CONTENT_TYPE) : nullptr;
}

/// Absent for what is no regular file: only files have thumbnails.
std::optional<ThumbnailSource> sourceOf(QByteArray const& path)
{
    struct stat status { };
    if (stat(path.constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    GStringOwner const uri(g_filename_to_uri(path.constData(), nullptr, nullptr));
    if (!uri)
        return std::nullopt;
    return ThumbnailSource { uri.get(), status.st_mtim.tv_sec };
}

}

/// One picture that is wanted, and what is known on the way to it. It is with one thread at a time.
struct FreedesktopThumbnails::Request {
    FileURL url;
    int pointSize;
    double scale;
    std::function<void(std::optional<Bitmap>)> done;

    std::optional<ThumbnailSource> source = std::nullopt;
    QByteArray contentType {};
    std::optional<Bitmap> found = std::nullopt;

    int pixels() const { return std::max(1, static_cast<int>(std::ceil(pointSize * scale))); }

    void take(QImage const& image)
    {
        if (image.isNull())
            return;
        bool const isLarger = std::max(image.width(), image.height()) > pixels();
        found = bitmapFrom(
            isLarger ? image.scaled(pixels(), pixels(), Qt::KeepAspectRatio, Qt::SmoothTransformation) : image);
    }
};

/// What the workers share with the main thread. It outlives both.
struct FreedesktopThumbnails::Workers {
    std::atomic<bool> areCancelled = false;
    std::mutex mutex;
    /// Null when nothing is to be posted any more.
    QObject* mainThread = nullptr;

    void post(std::function<void()> work)
    {
        std::scoped_lock const lock(mutex);
        if (mainThread)
            QMetaObject::invokeMethod(mainThread, std::move(work), Qt::QueuedConnection);
    }
};

FreedesktopThumbnails::FreedesktopThumbnails(
    std::shared_ptr<DeliveryGate> gate, std::chrono::milliseconds thumbnailerDeadline)
    : gate_(std::move(gate))
    , thumbnailer_(thumbnailerDeadline)
    , workers_(std::make_shared<Workers>())
    , pool_(std::make_unique<QThreadPool>())
{
    workers_->mainThread = &context_;
    pool_->setMaxThreadCount(workerCount);
}

FreedesktopThumbnails::~FreedesktopThumbnails()
{
    workers_->areCancelled = true;
    {
        std::scoped_lock const lock(workers_->mutex);
        workers_->mainThread = nullptr;
    }
    pool_->clear();
    // The pool's own end would wait for ever; a worker touches nothing that ends here.
    if (!pool_->waitForDone(patienceAtEndMilliseconds))
        static_cast<void>(pool_.release());
}

void FreedesktopThumbnails::generate(
    FileURL const& url, int pointSize, double scale, std::function<void(std::optional<Bitmap>)> done)
{
    auto const request = std::make_shared<Request>(Request { url, pointSize, scale, std::move(done) });
    // What is about to be shown goes first, and has the processors for itself.
    auto* const timer = new QTimer(&context_);
    timer->setSingleShot(true);
    QObject::connect(timer, &QTimer::timeout, &context_, [this, timer, request] {
        timer->deleteLater();
        lookIntoCache(request);
    });
    timer->start(headStartMilliseconds);
}

void FreedesktopThumbnails::lookIntoCache(std::shared_ptr<Request> const& request)
{
    pool_->start([this, request, workers = workers_] {
        auto const path = pathBytes(request->url);
        request->source = sourceOf(path);
        if (request->source) {
            request->take(ThumbnailCache().find(*request->source, request->pixels(), Flavors::sufficient));
            request->contentType = contentTypeOf(path);
        }
        workers->post([this, request] {
            if (request->found)
                deliver(*request, *request->found);
            else if (request->source)
                askThumbnailer(request);
            else
                takeIcon(*request);
        });
    });
}

void FreedesktopThumbnails::askThumbnailer(std::shared_ptr<Request> const& request)
{
    ThumbnailRequest const asked { QString::fromLatin1(request->source->uri),
        exactText(request->contentType.toStdString()), QString::fromLatin1(flavorFor(request->pixels()).name) };
    // The thumbnailer's own word is not needed: what it has made is in the cache.
    thumbnailer_.generate(asked, [this, request](DesktopThumbnailer::Outcome) { readPictureItself(request); });
}

void FreedesktopThumbnails::readPictureItself(std::shared_ptr<Request> const& request)
{
    pool_->start([this, request, workers = workers_] {
        auto const& source = *request->source;
        ThumbnailCache const cache;
        request->take(cache.find(source, request->pixels(), Flavors::sufficient));
        if (!request->found)
            request->take(readPicture(pathBytes(request->url), request->pixels(), workers->areCancelled));
        if (!request->found)
            request->take(cache.find(source, request->pixels(), Flavors::all));
        workers->post([this, request] {
            if (request->found)
                deliver(*request, *request->found);
            else
                takeIcon(*request);
        });
    });
}

void FreedesktopThumbnails::takeIcon(Request& request)
{
    QSize const size(request.pointSize, request.pointSize);
    auto const icon = iconFor(Image::iconForFile(request.url, request.pointSize));
    auto const image = icon.pixmap(size, request.scale).toImage();
    if (image.isNull())
        gate_->deliver([done = request.done] { done(std::nullopt); });
    else
        deliver(request, bitmapFrom(image));
}

void FreedesktopThumbnails::deliver(Request& request, Bitmap picture)
{
    gate_->deliver([isAlive = QPointer(&context_), done = std::move(request.done), picture = std::move(picture)] {
        if (isAlive)
            done(picture);
    });
}

}
