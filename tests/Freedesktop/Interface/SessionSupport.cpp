#include "Freedesktop/Interface/SessionSupport.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <utility>

namespace marrowick {

bool waitFor(std::function<bool()> const& condition, std::chrono::milliseconds deadline)
{
    QElapsedTimer timer;
    timer.start();
    // Wakes the loop, where no event would.
    QTimer ticks;
    ticks.start(10);
    while (!condition()) {
        if (timer.elapsed() > deadline.count())
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

void xdotool(QString const& arguments)
{
    QProcess::execute(QStringLiteral("xdotool"), arguments.split(u' '));
}

HeldKey::HeldKey(QString name)
    : name_(std::move(name))
{
    xdotool(QStringLiteral("keydown ") + name_);
}

HeldKey::~HeldKey()
{
    xdotool(QStringLiteral("keyup ") + name_);
}

TestProcess::TestProcess(QString const& program, QStringList const& arguments)
{
    process_.setProcessChannelMode(QProcess::MergedChannels);
    process_.start(program, arguments);
    process_.waitForStarted();
}

TestProcess::~TestProcess()
{
    kill();
}

bool TestProcess::waitForEnd()
{
    return waitFor([this] { return hasEnded(); });
}

void TestProcess::kill()
{
    if (hasEnded())
        return;
    process_.kill();
    process_.waitForFinished();
}

std::string const& TestProcess::output()
{
    output_ += process_.readAll().toStdString();
    return output_;
}

void RecordingLog::write(std::string_view message)
{
    std::scoped_lock const lock(mutex_);
    lines_.emplace_back(message);
}

std::vector<std::string> RecordingLog::lines() const
{
    std::scoped_lock const lock(mutex_);
    return lines_;
}

}
