#include "Freedesktop/Interface/FreedesktopDispatch.h"

#include "Freedesktop/Interface/DirectoryWatch.h"

#include <QPointer>
#include <QThread>
#include <QTimer>

#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <utility>

namespace marrowick {

namespace {

constexpr int backgroundThreads = 2;
constexpr int backgroundNiceness = 10;

/// On Linux both are properties of the thread. Where they are refused the work is done all the same.
void lowerPriorityOfThisThread()
{
    sched_param const parameters {};
    sched_setscheduler(0, SCHED_BATCH, &parameters);
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), backgroundNiceness);
}

}

FreedesktopDispatch::FreedesktopDispatch(std::shared_ptr<DeliveryGate> gate)
    : gate_(std::move(gate))
{
    background_.setMaxThreadCount(backgroundThreads);
}

FreedesktopDispatch::~FreedesktopDispatch()
{
    background_.clear();
    background_.waitForDone();
}

bool FreedesktopDispatch::isMainThread() const
{
    return QThread::currentThread() == mainThread_.thread();
}

void FreedesktopDispatch::onMainThread(std::function<void()> work)
{
    QMetaObject::invokeMethod(
        &mainThread_, [this, work = std::move(work)]() mutable { deliver(std::move(work)); }, Qt::QueuedConnection);
}

void FreedesktopDispatch::deliver(std::function<void()> work)
{
    gate_->deliver([isAlive = QPointer(&mainThread_), work = std::move(work)] {
        if (isAlive)
            work();
    });
}

void FreedesktopDispatch::inBackground(std::function<void()> work)
{
    background_.start([work = std::move(work)] {
        // The pool's threads run nothing else.
        thread_local bool isPrepared = false;
        if (!std::exchange(isPrepared, true))
            lowerPriorityOfThisThread();
        work();
    });
}

Subscription FreedesktopDispatch::directoryWatch(
    FileURL const& url, std::function<void()> handler, std::function<void()> ended)
{
    auto watch = DirectoryWatch::make({ gate_, &mainThread_ }, url, std::move(handler), std::move(ended));
    if (!watch)
        return {};
    return Subscription([watch = std::move(watch)]() mutable { watch.reset(); });
}

Subscription FreedesktopDispatch::repeatingTimer(std::chrono::milliseconds interval, std::function<void()> handler)
{
    auto* timer = new QTimer(&mainThread_);
    timer->setTimerType(Qt::CoarseTimer);
    QObject::connect(timer, &QTimer::timeout, timer,
        [gate = gate_, timer = QPointer(timer), handler = std::move(handler), isWaiting = false]() mutable {
            if (std::exchange(isWaiting, true))
                return;
            gate->deliver([&isWaiting, &handler, timer] {
                // What the references lead to is the timer's, and its end may come from inside the handler.
                if (!timer || !timer->isActive())
                    return;
                isWaiting = false;
                handler();
            });
        });
    timer->start(interval);
    return Subscription([timer = QPointer(timer)] {
        if (!timer)
            return;
        timer->stop();
        // The end may come from inside the handler, which the timer holds.
        timer->deleteLater();
    });
}

}
