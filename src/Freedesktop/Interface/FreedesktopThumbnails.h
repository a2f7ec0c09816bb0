#pragma once

#include "Freedesktop/DeliveryGate.h"
#include "Freedesktop/Interface/DesktopThumbnailer.h"
#include "Platform/Thumbnails.h"

#include <QObject>

#include <chrono>
#include <memory>

class QThreadPool;

namespace marrowick {

/// Pictures as the file managers show them: of the cache that they share, made by the desktop's thumbnailer, of the file
/// itself where it is a picture, and at last the icon of the file. Files are read and pictures decoded on other threads.
class FreedesktopThumbnails final : public Thumbnails {
public:
    /// Pictures come through `gate`; the desktop's thumbnailer has no longer than `thumbnailerDeadline`.
    explicit FreedesktopThumbnails(
        std::shared_ptr<DeliveryGate> gate, std::chrono::milliseconds thumbnailerDeadline = std::chrono::seconds(4));
    ~FreedesktopThumbnails() override;

    void generate(
        FileURL const& url, int pointSize, double scale, std::function<void(std::optional<Bitmap>)> done) override;

private:
    struct Request;
    struct Workers;

    void lookIntoCache(std::shared_ptr<Request> const& request);
    void askThumbnailer(std::shared_ptr<Request> const& request);
    void readPictureItself(std::shared_ptr<Request> const& request);
    void takeIcon(Request& request);
    void deliver(Request& request, Bitmap picture);

    std::shared_ptr<DeliveryGate> gate_;
    DesktopThumbnailer thumbnailer_;
    /// What is posted to the main thread ends with it.
    QObject context_;
    std::shared_ptr<Workers> workers_;
    std::unique_ptr<QThreadPool> pool_;
};

}
