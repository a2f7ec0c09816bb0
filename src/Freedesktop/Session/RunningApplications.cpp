#include "Freedesktop/Session/RunningApplications.h"

#include "Freedesktop/Session/BackgroundApplications.h"
#include "Freedesktop/Session/FreedesktopRunningApplication.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace marrowick {

namespace {

std::string executableOfProcess(pid_t pid)
{
    std::array<char, 4096> target {};
    auto const link = "/proc/" + std::to_string(pid) + "/exe";
    auto const length = readlink(link.c_str(), target.data(), target.size());
    std::string_view path(target.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    // A program that was replaced by an update while it runs.
    constexpr std::string_view deleted = " (deleted)";
    if (path.ends_with(deleted))
        path.remove_suffix(deleted.size());
    return std::string(path);
}

/// The processes behind the windows of `application`, which ran at the moment `now`. What they are is looked up when one
/// of them is to be ended: for all of them that would take longer than everything else.
std::vector<ProcessIdentity> processesOf(ApplicationFacts const& application, std::uint64_t now)
{
    std::vector<ProcessIdentity> processes;
    for (auto const& window : application.windows) {
        if (!window.pid || !window.isLocal)
            continue;
        ProcessIdentity const process { *window.pid, now };
        if (std::find(processes.begin(), processes.end(), process) == processes.end())
            processes.push_back(process);
    }
    return processes;
}

}

struct RunningApplications::Observers {
    struct Observer {
        ActivationHandler handler;
        bool hasEnded = false;
    };

    std::shared_ptr<XConnection> connection;
    std::vector<std::shared_ptr<Observer>> all;

    void end(std::shared_ptr<Observer> const& observer)
    {
        observer->hasEnded = true;
        std::erase(all, observer);
        if (all.empty())
            connection->watchRootProperty(XAtom::netActiveWindow, nullptr);
    }
};

RunningApplications::RunningApplications(std::shared_ptr<XConnection> connection, std::shared_ptr<DeliveryGate> gate,
    DesktopEntries& entries, std::string ownIdentifier)
    : connection_(std::move(connection))
    , gate_(std::move(gate))
    , entries_(entries)
    , rules_ { entries_, std::move(ownIdentifier), getpid(), executableOfProcess }
    , observers_(std::make_shared<Observers>())
{
    observers_->connection = connection_;
}

RunningApplications::~RunningApplications()
{
    // What waits at the gate still knows them.
    for (auto const& observer : observers_->all)
        observer->hasEnded = true;
    connection_->watchRootProperty(XAtom::netActiveWindow, nullptr);
}

std::vector<ApplicationFacts> RunningApplications::read()
{
    auto const windows = readClientWindows(*connection_, [this] { entries_.refresh(); });
    auto const now = ticksSinceBoot();
    std::unordered_map<pid_t, std::string> executables;
    auto rules = rules_;
    rules.executableOf = [&](pid_t pid) {
        auto const [known, isNew] = executables.try_emplace(pid);
        if (isNew)
            known->second = rules_.executableOf(pid);
        return known->second;
    };
    auto applications = applicationsOfWindows(windows, rules);
    for (auto& application : applications)
        application.processes = processesOf(application, now);
    return applications;
}

std::vector<std::shared_ptr<RunningApplication>> RunningApplications::list(BackgroundOnly backgroundOnly)
{
    auto known = read();
    std::vector<ApplicationFacts> withoutWindows;
    lookAtIcons(known, *connection_, [&] {
        if (backgroundOnly == BackgroundOnly::included)
            withoutWindows = applicationsWithoutWindows(known, rules_);
    });
    std::move(withoutWindows.begin(), withoutWindows.end(), std::back_inserter(known));
    std::vector<std::shared_ptr<RunningApplication>> applications;
    applications.reserve(known.size());
    for (auto& facts : known)
        applications.push_back(std::make_shared<FreedesktopRunningApplication>(std::move(facts), connection_));
    return applications;
}

Subscription RunningApplications::observeActivation(ActivationHandler handler)
{
    if (!connection_->isUsable())
        return {};
    if (observers_->all.empty()) {
        // Watched before it is read, so that no change falls in between.
        connection_->watchRootProperty(XAtom::netActiveWindow, [this] { activeWindowChanged(); });
        lastActive_.clear();
        if (auto const window = readActiveWindow(*connection_); window && !isOwnWindow(*window, rules_)) {
            entries_.refresh();
            lastActive_ = factsOfWindow(*window, rules_).key;
        }
    }
    auto const observer = std::make_shared<Observers::Observer>(Observers::Observer { std::move(handler) });
    observers_->all.push_back(observer);
    return Subscription([observers = std::weak_ptr(observers_), weakObserver = std::weak_ptr(observer)] {
        auto const ended = weakObserver.lock();
        if (auto const known = observers.lock(); known && ended)
            known->end(ended);
    });
}

void RunningApplications::activeWindowChanged()
{
    auto const window = readActiveWindow(*connection_);
    if (!window || isOwnWindow(*window, rules_))
        return;
    entries_.refresh();
    auto facts = factsOfWindow(*window, rules_);
    if (std::exchange(lastActive_, facts.key) == facts.key)
        return;
    // The application's other windows tell the rest.
    auto const applications = read();
    auto const whole = std::find_if(applications.begin(), applications.end(),
        [&](auto const& application) { return application.key == facts.key; });
    if (whole != applications.end())
        facts = *whole;
    facts.isActive = true;

    auto const application = std::make_shared<FreedesktopRunningApplication>(std::move(facts), connection_);
    gate_->deliver([application, observers = observers_->all] {
        for (auto const& observer : observers) {
            if (!observer->hasEnded)
                observer->handler(application);
        }
    });
}

}
