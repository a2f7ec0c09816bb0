#include "Freedesktop/Interface/DesktopThumbnailer.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QTimer>

#include <utility>
#include <vector>

namespace marrowick {

namespace {

constexpr char const* service = "org.freedesktop.thumbnails.Thumbnailer1";
constexpr char const* path = "/org/freedesktop/thumbnails/Thumbnailer1";
constexpr char const* busName = "org.freedesktop.DBus";

QDBusMessage callOfBus(char const* method)
{
    auto const name = QString::fromLatin1(busName);
    return QDBusMessage::createMethodCall(
        name, QStringLiteral("/org/freedesktop/DBus"), name, QString::fromLatin1(method));
}

QDBusMessage callOfThumbnailer(char const* method)
{
    auto const name = QString::fromLatin1(service);
    return QDBusMessage::createMethodCall(name, QString::fromLatin1(path), name, QString::fromLatin1(method));
}

}

DesktopThumbnailer::DesktopThumbnailer(std::chrono::milliseconds deadline)
    : deadline_(deadline)
{
}

void DesktopThumbnailer::generate(ThumbnailRequest request, Done done)
{
    auto const id = ++lastId_;
    jobs_[id] = { std::move(request), std::move(done), 0 };
    if (!QDBusConnection::sessionBus().isConnected()) {
        QMetaObject::invokeMethod(
            this, [this, id] { end(id, Outcome::failed); }, Qt::QueuedConnection);
        return;
    }
    QTimer::singleShot(deadline_, this, [this, id] { end(id, Outcome::failed); });
    if (!std::exchange(isListening_, true)) {
        auto const listen = [this](char const* signal, char const* slot) {
            // A name would be resolved at once, which waits for the bus.
            QDBusConnection::sessionBus().connect(QString(), QString::fromLatin1(path), QString::fromLatin1(service),
                QString::fromLatin1(signal), this, slot);
        };
        listen("Ready", SLOT(ready(uint, QStringList)));
        listen("Error", SLOT(error(uint, QStringList, int, QString)));
        listen("Finished", SLOT(finished(uint)));
    }
    lookForOwner(id);
}

void DesktopThumbnailer::ask(QDBusMessage const& call, std::function<void(QDBusMessage const&)> answered)
{
    auto* const watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, answered = std::move(answered)] {
        watcher->deleteLater();
        answered(watcher->reply());
    });
}

void DesktopThumbnailer::lookForOwner(quint64 id)
{
    auto call = callOfBus("NameHasOwner");
    call << QString::fromLatin1(service);
    ask(call, [this, id](QDBusMessage const& answer) {
        if (answer.arguments().value(0).toBool())
            queue(id);
        else
            lookForActivatable(id);
    });
}

void DesktopThumbnailer::lookForActivatable(quint64 id)
{
    ask(callOfBus("ListActivatableNames"), [this, id](QDBusMessage const& answer) {
        if (answer.arguments().value(0).toStringList().contains(QLatin1String(service)))
            queue(id);
        else
            end(id, Outcome::failed);
    });
}

void DesktopThumbnailer::queue(quint64 id)
{
    auto const job = jobs_.find(id);
    if (job == jobs_.end())
        return;
    auto const& request = job->second.request;
    auto call = callOfThumbnailer("Queue");
    call << QStringList(request.uri) << QStringList(request.contentType) << request.flavor
         << QStringLiteral("foreground") << 0U;
    ask(call, [this, id](QDBusMessage const& answer) {
        if (answer.type() != QDBusMessage::ReplyMessage) {
            end(id, Outcome::failed);
            return;
        }
        auto const handle = answer.arguments().value(0).toUInt();
        if (finishedEarly_.remove(handle))
            end(id, Outcome::finished);
        else if (auto const queued = jobs_.find(id); queued != jobs_.end())
            queued->second.handle = handle;
    });
}

void DesktopThumbnailer::ready(uint, QStringList const& uris)
{
    endThoseFor(uris, Outcome::finished);
}

void DesktopThumbnailer::error(uint, QStringList const& uris, int, QString const&)
{
    endThoseFor(uris, Outcome::failed);
}

void DesktopThumbnailer::finished(uint handle)
{
    bool isAwaited = false;
    for (auto const& [id, job] : jobs_) {
        if (job.handle == handle && handle != 0) {
            end(id, Outcome::finished);
            return;
        }
        isAwaited = isAwaited || job.handle == 0;
    }
    if (isAwaited)
        finishedEarly_.insert(handle);
}

void DesktopThumbnailer::endThoseFor(QStringList const& uris, Outcome outcome)
{
    std::vector<quint64> ended;
    for (auto const& [id, job] : jobs_) {
        if (uris.contains(job.request.uri))
            ended.push_back(id);
    }
    for (auto const id : ended)
        end(id, outcome);
}

void DesktopThumbnailer::end(quint64 id, Outcome outcome)
{
    auto job = jobs_.extract(id);
    if (jobs_.empty())
        finishedEarly_.clear();
    if (!job.empty())
        job.mapped().done(outcome);
}

}
