#include "Freedesktop/Interface/NotifierHostWatch.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QTimer>

#include <chrono>
#include <utility>

namespace marrowick {

namespace {

QString const watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
QString const watcherPath = QStringLiteral("/StatusNotifierWatcher");
constexpr std::chrono::seconds patience { 1 };

}

NotifierHostWatch::NotifierHostWatch(std::function<void()> changed)
    : changed_(std::move(changed))
    , bus_(QDBusConnection::sessionBus())
{
    if (!bus_.isConnected()) {
        isHostRegistered_ = false;
        return;
    }
    auto* owners = new QDBusServiceWatcher(watcherName, bus_, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owners, &QDBusServiceWatcher::serviceOwnerChanged, this,
        [this](QString const&, QString const&, QString const& owner) {
            if (!owner.isEmpty())
                return ask();
            ++lastQuestion_;
            settle(false);
        });
    for (char const* signal : { "StatusNotifierHostRegistered", "StatusNotifierHostUnregistered" })
        bus_.connect(watcherName, watcherPath, watcherName, QLatin1String(signal), this, SLOT(ask()));
    ask();
    QTimer::singleShot(patience, this, [this] {
        if (!isHostRegistered_)
            settle(false);
    });
}

void NotifierHostWatch::ask()
{
    auto question = QDBusMessage::createMethodCall(
        watcherName, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << watcherName << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    auto* call = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, number = ++lastQuestion_](auto* finished) {
        finished->deleteLater();
        if (number == lastQuestion_)
            answered(*finished);
    });
}

void NotifierHostWatch::answered(QDBusPendingCallWatcher& call)
{
    QDBusPendingReply<QDBusVariant> const reply = call;
    settle(reply.isValid() && reply.value().variant().toBool());
}

void NotifierHostWatch::settle(bool isHostRegistered)
{
    if (isHostRegistered_ == isHostRegistered)
        return;
    isHostRegistered_ = isHostRegistered;
    changed_();
}

}
