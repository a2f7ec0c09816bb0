#include "BenchmarkServices.h"

#include "Platform/InfoPanel.h"
#include "Platform/Platform.h"
#include "UI/InfoWindowController.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>
#include <ctime>
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

double processorSeconds()
{
    timespec time {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Serves events until nothing that was begun goes on any more.
void rest()
{
    constexpr auto span = std::chrono::milliseconds(25);
    constexpr double idle = 0.002;
    QTimer ticks;
    ticks.start(std::chrono::milliseconds(5));
    for (auto before = processorSeconds();; before = processorSeconds()) {
        auto const end = std::chrono::steady_clock::now() + span;
        while (std::chrono::steady_clock::now() < end)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (processorSeconds() - before < idle)
            return;
    }
}

QLabel* makeLabel(QWidget& window, int pixels, bool isBold)
{
    auto* const label = new QLabel(&window);
    auto font = label->font();
    font.setPixelSize(pixels);
    font.setBold(isBold);
    label->setFont(font);
    return label;
}

/// The widgets of the Info window with nothing in them.
std::unique_ptr<QWidget> makeEmptyWindow()
{
    auto window = std::make_unique<QWidget>(nullptr,
        Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint
            | Qt::WindowStaysOnTopHint);
    auto* const column = new QVBoxLayout(window.get());
    auto* const icon = new QLabel(window.get());
    icon->setFixedSize(96, 96);
    column->addWidget(icon, 0, Qt::AlignHCenter);
    for (auto const& [pixels, isBold] : { std::pair { 15, true }, { 11, false }, { 10, false } })
        column->addWidget(makeLabel(*window, pixels, isBold));
    auto* const text = new QPlainTextEdit(window.get());
    text->setFixedHeight(140);
    column->addWidget(text);
    auto* const buttons = new QHBoxLayout;
    for (auto const* title : { "Trash", "Reveal", "Get Info", "Dismiss" }) {
        auto* const button = new QPushButton(QString::fromLatin1(title), window.get());
        button->setAutoDefault(false);
        button->setMinimumWidth(button->fontMetrics().horizontalAdvance(button->text()) + 16);
        buttons->addWidget(button);
    }
    column->addLayout(buttons);
    window->setFixedSize(340, 420);
    return window;
}

/// A window and the ways to show it and to take it away.
struct Case {
    std::string name;
    std::function<void()> show;
    std::function<void(QWidget& window)> close;
};

void measure(benchmark::State& state, Case const& shown)
{
    for (auto _ : state) {
        auto const start = std::chrono::steady_clock::now();
        WindowPaint paint;
        shown.show();
        auto* const window = paint.wait();
        if (!window) {
            state.SkipWithError("no window was painted");
            break;
        }
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        rest();
        shown.close(*window);
        rest();
    }
}

void registerCase(Case shown)
{
    auto const name = shown.name;
    benchmark::RegisterBenchmark(
        name.c_str(), [shown = std::move(shown)](benchmark::State& state) { measure(state, shown); })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

/// Two items of a kind, shown in turn: nothing of one is left over for the other.
struct Items {
    FileURL first;
    FileURL second;
};

/// A text with more than the window shows.
FileURL writeText(QTemporaryDir const& folder, std::string const& writer)
{
    auto const path = folder.path().toStdString() + "/A text of " + writer + ".txt";
    std::ofstream stream(path);
    for (int line = 0; line < 2'000; ++line)
        stream << "Line " << line << " of a text that " << writer << " has written.\n";
    return FileURL(path);
}

FileURL writePicture(QTemporaryDir const& folder, QString const& name, Qt::GlobalColor colour)
{
    auto const path = folder.filePath(name);
    QImage picture(3'000, 2'000, QImage::Format_RGB32);
    picture.fill(colour);
    picture.save(path);
    return FileURL(path.toStdString());
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
    Items const texts { writeText(folder, "somebody"), writeText(folder, "another one") };
    Items const pictures { writePicture(folder, QStringLiteral("A picture.png"), Qt::darkCyan),
        writePicture(folder, QStringLiteral("Another one.png"), Qt::darkRed) };
    auto const showEmpty = [&empty] {
        empty->move(empty->screen()->availableGeometry().center() - empty->rect().center());
        empty->show();
        empty->raise();
        empty->activateWindow();
    };
    // A window that the display does not know yet, as an opened one is, and one that was only out of sight.
    registerCase({ "info empty", showEmpty, [](QWidget& window) { window.close(); } });
    registerCase({ "info empty/hidden", showEmpty, [](QWidget& window) { window.hide(); } });
    for (auto const& [what, items] : { std::pair { "text", texts }, { "picture", pictures } }) {
        auto const show = [items = items, isFirst = false]() mutable {
            isFirst = !isFirst;
            InfoWindowController::shared().show(isFirst ? items.first : items.second);
        };
        // As its user closes it.
        auto const close = [](QWidget& window) { dynamic_cast<InfoPanel&>(window).close(); };
        registerCase({ std::string("info marrowick/") + what, show, close });
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
