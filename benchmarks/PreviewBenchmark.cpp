#include "Platform/Platform.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QImage>
#include <QImageReader>
#include <QTemporaryDir>
#include <QTimer>
#include <QWidget>

#include <cmath>
#include <cstdlib>
#include <string>

namespace marrowick::benchmarks {

namespace {

constexpr QSize photoSize(5472, 3648);
/// What a screen of 1280 by 800 has room for.
constexpr QSize screenRoom(1024, 640);

/// Has a camera's mixture of surfaces and grain.
QImage photo()
{
    QImage image(photoSize, QImage::Format_RGB32);
    std::uint32_t grain = 1;
    for (int y = 0; y < image.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            grain = grain * 1664525 + 1013904223;
            int const noise = static_cast<int>(grain >> 28);
            auto const wave = [noise](double value) { return static_cast<int>(120 + 100 * std::sin(value)) + noise; };
            row[x] = qRgb(wave(x / 310.0), wave(y / 270.0), wave((x + y) / 190.0));
        }
    }
    return image;
}

class OneItem : public PreviewPanelDataSource {
public:
    explicit OneItem(FileURL url)
        : url_(std::move(url))
    {
    }
    std::size_t numberOfPreviewItems(PreviewPanel const&) const override { return 1; }
    std::optional<FileURL> previewPanel(PreviewPanel const&, std::size_t) const override { return url_; }

private:
    FileURL url_;
};

/// Sees the first painting of the view that bears the picture's name.
class PicturePaint : public QObject {
public:
    explicit PicturePaint(QString name)
        : name_(std::move(name))
    {
        qApp->installEventFilter(this);
    }

    bool wait()
    {
        QElapsedTimer timer;
        timer.start();
        QTimer alarm;
        alarm.start(30'000);
        // The painting itself comes right after the event is seen, before `processEvents` returns.
        while (!isPainted_ && timer.elapsed() < 30'000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return isPainted_;
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto const* const widget = event->type() == QEvent::Paint ? qobject_cast<QWidget*>(watched) : nullptr;
        if (widget && !widget->isWindow() && widget->accessibleName() == name_)
            isPainted_ = true;
        return false;
    }

private:
    QString name_;
    bool isPainted_ = false;
};

void closeWindows()
{
    for (auto* window : QApplication::topLevelWidgets())
        window->close();
    QCoreApplication::processEvents();
}

void preview(benchmark::State& state, FileURL const& url)
{
    auto* const panel = platform().windows->previewPanel();
    OneItem source(url);
    panel->setDataSource(&source);
    for (auto _ : state) {
        PicturePaint paint(QString::fromStdString(std::string(url.lastPathComponent())));
        panel->makeKeyAndOrderFront();
        panel->reloadData();
        if (!paint.wait())
            state.SkipWithError("the picture was not painted");
        state.PauseTiming();
        closeWindows();
        state.ResumeTiming();
    }
    panel->setDataSource(nullptr);
}

void decode(benchmark::State& state, FileURL const& url, QSize room)
{
    for (auto _ : state) {
        QImageReader reader(QString::fromStdString(url.path()));
        reader.setAutoTransform(true);
        if (!room.isEmpty())
            reader.setScaledSize(photoSize.scaled(room, Qt::KeepAspectRatio));
        auto image = reader.read();
        if (image.isNull())
            state.SkipWithError("the picture was not decoded");
        benchmark::DoNotOptimize(image.bits());
    }
}

void registerAll(FileURL const& url)
{
    auto const add = [](char const* name, auto run) {
        benchmark::RegisterBenchmark(name, run)->UseRealTime()->Unit(benchmark::kMillisecond);
    };
    add("preview marrowick", [url](benchmark::State& state) { preview(state, url); });
    add("preview decode", [url](benchmark::State& state) { decode(state, url, {}); });
    add("preview decode for the screen", [url](benchmark::State& state) { decode(state, url, screenRoom); });
}

}

}

int main(int argc, char** argv)
{
    using namespace marrowick;
    PlatformScope const scope(makePlatform(argc, argv));
    QTemporaryDir const folder;
    auto const path = folder.filePath(QStringLiteral("photo.jpg"));
    if (!benchmarks::photo().save(path, "jpeg", 90))
        return 2;
    benchmarks::registerAll(FileURL(path.toStdString()));
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
