#pragma once

#include <QDBusConnection>
#include <QObject>

#include <cstdint>
#include <functional>
#include <optional>

class QDBusPendingCallWatcher;

namespace marrowick {

/// Knows whether a status area of the StatusNotifier kind is there: a host that is registered with the session's
/// `org.kde.StatusNotifierWatcher`.
class NotifierHostWatch : public QObject {
    Q_OBJECT

public:
    /// `changed` is called when the answer becomes known or another one.
    explicit NotifierHostWatch(std::function<void()> changed);

    /// Absent until the watcher has answered; one that lets a second pass counts as having no host until it answers.
    std::optional<bool> isHostRegistered() const { return isHostRegistered_; }

private Q_SLOTS:
    void ask();

private:
    void answered(QDBusPendingCallWatcher& call);
    void settle(bool isHostRegistered);

    std::function<void()> changed_;
    QDBusConnection bus_;
    std::optional<bool> isHostRegistered_;
    std::uint64_t lastQuestion_ = 0;
};

}
