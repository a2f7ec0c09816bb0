#include "BenchmarkServices.h"

#include "Platform/Platform.h"
#include "UI/InfoWindowController.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>
#include <fstream>
#include <functional>
#include <memory>

namespace marrowick::benchmarks {

namespace {

/// Sees a window's painting after it was shown.
class WindowPaint : public QObject {
public:
    WindowPaint() { qApp->installEventFilter(this); }

    /// Serves events until a window has been painted; null when that took too long.
    QWidget* wait()
    {
        auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
        QTimer alarm;
        alarm.start(std::chrono::seconds(30));
        while (!painted_ && std::chrono::steady_clock::now() < end)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return painted_;
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        // The painting itself comes right after, before `processEvents` returns.
        auto* const widget = event->type() == QEvent::Paint ? qobject_cast<QWidget*>(watched) : nullptr;
        if (widget && widget->isWindow())
            painted_ = widget;
        return false;
    }

private:
    QWidget* painted_ = nullptr;
};

/// Lets the window disappear and everything come to rest that was begun for it.
void hideAndRest(QWidget& window)
{
    window.close();
    auto const end = std::chrono::steady_clock::now() + std::chrono::milliseconds(30);
    QTimer ticks;
    ticks.start(std::chrono::milliseconds(5));
    while (std::chrono::steady_clock::now() < end)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// The widgets of the Info window with nothing in them.
std::unique_ptr<QWidget> makeEmptyWindow()
{
    auto window = std::make_unique<QWidget>(nullptr, Qt::Tool | Qt::WindowStaysOnTopHint);
    auto* const column = new QVBoxLayout(window.get());
    for (int label = 0; label < 4; ++label)
        column->addWidget(new QLabel(window.get()));
    column->addWidget(new QPlainTextEdit(window.get()));
    auto* const buttons = new QHBoxLayout;
    for (int button = 0; button < 4; ++button)
        buttons->addWidget(new QPushButton(window.get()));
    column->addLayout(buttons);
    window->setFixedSize(340, 420);
    return window;
}

void measure(benchmark::State& state, std::function<void()> const& show)
{
    for (auto _ : state) {
        auto const start = std::chrono::steady_clock::now();
        WindowPaint paint;
        show();
        auto* const window = paint.wait();
        if (!window) {
            state.SkipWithError("no window was painted");
            break;
        }
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        hideAndRest(*window);
    }
}

void registerWindow(std::string const& name, std::function<void()> show)
{
    benchmark::RegisterBenchmark(
        name.c_str(), [show = std::move(show)](benchmark::State& state) { measure(state, show); })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

/// A text with more than the window shows.
std::string writeText(QTemporaryDir const& folder)
{
    auto const path = folder.filePath(QStringLiteral("A text of some length.txt")).toStdString();
    std::ofstream stream(path);
    for (int line = 0; line < 2'000; ++line)
        stream << "Line " << line << " of a text that somebody has written.\n";
    return path;
}

std::string writePicture(QTemporaryDir const& folder)
{
    auto const path = folder.filePath(QStringLiteral("A picture.png"));
    QImage picture(3'000, 2'000, QImage::Format_RGB32);
    picture.fill(Qt::darkCyan);
    picture.save(path);
    return path.toStdString();
}

}

}

int main(int argc, char** argv)
{
    using namespace marrowick;
    using namespace marrowick::benchmarks;
    auto services = makePlatform(argc, argv);
    services.defaultsStore = std::make_unique<FixedDefaults>();
    PlatformScope const scope(std::move(services));
    QTemporaryDir const folder;
    auto const empty = makeEmptyWindow();
    registerWindow("info empty", [&empty] {
        empty->show();
        empty->raise();
        empty->activateWindow();
    });
    for (auto const& [what, path] : { std::pair { "text", writeText(folder) }, { "picture", writePicture(folder) } })
        registerWindow(
            std::string("info marrowick/") + what, [url = FileURL(path)] { InfoWindowController::shared().show(url); });
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
