#pragma once

#include "Platform/Dispatch.h"

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <thread>
#include <utility>
#include <vector>

namespace marrowick {

/// Keeps what was posted until the test lets it run, all on the test's thread. While it is held back nothing reaches the
/// program: what the test lets run or fires waits for the next `runMain` after that.
class FakeDispatch final : public Dispatch {
public:
    bool isMainThread() const override { return std::this_thread::get_id() == mainThread_; }
    void onMainThread(std::function<void()> work) override { posted_.push_back(std::move(work)); }
    void inBackground(std::function<void()> work) override { background_.push_back(std::move(work)); }

    Subscription directoryWatch(FileURL const& url, std::function<void()> handler, std::function<void()> ended) override
    {
        if (unwatchable.contains(url))
            return {};
        auto const id = nextWatch_++;
        (*watches_)[id] = { url, std::move(handler), std::move(ended), false, false };
        return Subscription([weakWatches = std::weak_ptr(watches_), id] {
            if (auto const watches = weakWatches.lock())
                watches->erase(id);
        });
    }

    Subscription repeatingTimer(std::chrono::milliseconds interval, std::function<void()> handler) override
    {
        auto const id = nextTimer_++;
        (*timers_)[id] = { interval, std::move(handler) };
        return Subscription([weakTimers = std::weak_ptr(timers_), id] {
            if (auto const timers = weakTimers.lock())
                timers->erase(id);
        });
    }

    /// Runs what was posted, in order, and what that posts in turn.
    void runMain()
    {
        while (!isHeld() && !posted_.empty())
            runFirst(posted_);
    }

    /// Other threads go on while the main thread is held back.
    void runBackground()
    {
        while (!background_.empty())
            runFirst(background_);
    }

    /// Something of the desktop reaches the program: at once, or after what holds it back has ended.
    void deliver(std::function<void()> delivery)
    {
        if (isHeld())
            posted_.push_back(std::move(delivery));
        else
            delivery();
    }

    /// Closures nest.
    void hold() { ++holders_; }
    void release() { --holders_; }
    bool isHeld() const { return holders_ > 0; }

    /// Every timer of `interval` fires once.
    void fireTimers(std::chrono::milliseconds interval)
    {
        std::vector<int> due;
        for (auto const& [id, timer] : *timers_) {
            if (timer.interval == interval)
                due.push_back(id);
        }
        for (auto const id : due)
            deliver([this, id] { fire(id); });
    }

    /// An entry of the folder is added, removed or renamed.
    void touch(FileURL const& folder) { notify(folder, false); }

    /// The folder itself goes away.
    void remove(FileURL const& folder) { notify(folder, true); }

    std::vector<FileURL> watched() const
    {
        std::vector<FileURL> urls;
        for (auto const& [id, watch] : *watches_)
            urls.push_back(watch.url);
        return urls;
    }

    /// Folders for which no watch can be had.
    std::set<FileURL> unwatchable;

    /// All that were ever begun.
    int watchesMade() const { return nextWatch_; }

    std::size_t timerCount() const { return timers_->size(); }

private:
    struct Timer {
        std::chrono::milliseconds interval;
        std::function<void()> handler;
    };

    struct Watch {
        FileURL url;
        std::function<void()> handler;
        std::function<void()> ended;
        bool isGone = false;
        bool isWaiting = false;
    };

    void notify(FileURL const& folder, bool isGone)
    {
        std::vector<int> told;
        for (auto& [id, watch] : *watches_) {
            if (watch.url != folder || watch.isGone)
                continue;
            watch.isGone = isGone;
            if (!std::exchange(watch.isWaiting, true))
                told.push_back(id);
        }
        for (auto const id : told)
            deliver([this, id] { tell(id); });
    }

    void tell(int id)
    {
        // One watch may end another one, and itself.
        auto const found = watches_->find(id);
        if (found == watches_->end())
            return;
        found->second.isWaiting = false;
        auto const handler = found->second.isGone ? found->second.ended : found->second.handler;
        handler();
    }

    static void runFirst(std::deque<std::function<void()>>& queue)
    {
        auto const work = std::move(queue.front());
        queue.pop_front();
        work();
    }

    void fire(int id)
    {
        // A timer may have ended another one that is due, and may end itself.
        auto const found = timers_->find(id);
        if (found == timers_->end())
            return;
        auto const handler = found->second.handler;
        handler();
    }

    std::thread::id mainThread_ = std::this_thread::get_id();
    std::deque<std::function<void()>> posted_;
    std::deque<std::function<void()>> background_;
    std::shared_ptr<std::map<int, Timer>> timers_ = std::make_shared<std::map<int, Timer>>();
    int nextTimer_ = 0;
    std::shared_ptr<std::map<int, Watch>> watches_ = std::make_shared<std::map<int, Watch>>();
    int nextWatch_ = 0;
    int holders_ = 0;
};

}
