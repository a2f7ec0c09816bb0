#include "FirstPaint.h"

#include <QApplication>
#include <QEvent>
#include <QMenu>
#include <QTimer>

namespace marrowick::benchmarks {

namespace {

FirstPaint::Seconds processTime()
{
    timespec time {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}

FirstPaint::FirstPaint()
{
    qApp->installEventFilter(this);
    cpuStart_ = processTime();
    start_ = std::chrono::steady_clock::now();
}

bool FirstPaint::wait(std::chrono::seconds patience)
{
    auto const end = start_ + patience;
    QTimer alarm;
    alarm.start(patience);
    while (!isPainted_ && std::chrono::steady_clock::now() < end)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    cpuTime_ = processTime() - cpuStart_;
    wallTime_ = std::chrono::steady_clock::now() - start_;
    return isPainted_;
}

bool FirstPaint::eventFilter(QObject* watched, QEvent* event)
{
    // The painting itself comes right after, before `processEvents` returns.
    if (event->type() == QEvent::Paint && qobject_cast<QMenu*>(watched))
        isPainted_ = true;
    return false;
}

void closeMenus()
{
    while (auto* popup = QApplication::activePopupWidget())
        popup->close();
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}
