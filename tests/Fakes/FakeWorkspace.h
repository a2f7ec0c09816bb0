#pragma once

#include "Fakes/CallRecord.h"
#include "Fakes/FakeDispatch.h"
#include "Platform/Workspace.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {

/// Remembers what was opened, shown and recycled; the test says which applications run, when one becomes active and how
/// recycling ends.
class FakeWorkspace final : public Workspace {
public:
    /// The files of each call.
    using Revealed = std::vector<std::vector<FileURL>>;

    struct OpenedWith {
        std::vector<FileURL> urls;
        FileURL application;
        friend bool operator==(OpenedWith const&, OpenedWith const&) = default;
    };

    FakeWorkspace(CallRecord& calls, FakeDispatch& dispatch)
        : calls_(calls)
        , dispatch_(dispatch)
    {
    }

    void open(FileURL const& url) override
    {
        opened.push_back(url);
        remember("open " + url.path());
    }
    void open(std::vector<FileURL> const& urls, FileURL const& withApplication) override
    {
        openedWith.push_back({ urls, withApplication });
        remember("open" + joinedPaths(urls) + " with " + withApplication.path());
    }
    void activateFileViewerSelecting(std::vector<FileURL> const& urls) override
    {
        revealed.push_back(urls);
        remember("reveal" + joinedPaths(urls));
    }
    void selectFile(FileURL const& path) override
    {
        selected.push_back(path);
        remember("select " + path.path());
    }
    void recycle(std::vector<FileURL> const& urls, std::function<void(std::optional<Error>)> done) override
    {
        recycled.push_back(urls);
        recycling_.push_back(std::move(done));
        remember("recycle" + joinedPaths(urls));
    }
    /// All of them, whatever is asked for: a desktop may not know better.
    std::vector<std::shared_ptr<RunningApplication>> runningApplications(BackgroundOnly backgroundOnly) override
    {
        backgroundAskedFor.push_back(backgroundOnly);
        return running;
    }
    std::vector<InstalledItem> additionalApplications() override { return addedApplications; }
    std::vector<InstalledItem> additionalPreferencePanes() override { return addedPreferencePanes; }

    Subscription observeActivation(std::function<void(std::shared_ptr<RunningApplication>)> handler) override
    {
        auto const id = nextObserver_++;
        (*observers_)[id] = std::move(handler);
        return Subscription([weakObservers = std::weak_ptr(observers_), id] {
            if (auto const observers = weakObservers.lock())
                observers->erase(id);
        });
    }

    /// `application` comes to the front; null where the desktop does not say which one did.
    void activate(std::shared_ptr<RunningApplication> const& application)
    {
        dispatch_.deliver([this, application] {
            auto const observers = *observers_;
            for (auto const& [id, handler] : observers) {
                if (observers_->contains(id))
                    handler(application);
            }
        });
    }

    /// What `recycle` was asked for first and has not told about yet ends, with an error or none.
    void finishRecycling(std::optional<Error> const& error)
    {
        if (recycling_.empty()) {
            ADD_FAILURE() << "nothing is being recycled";
            return;
        }
        auto const done = std::move(recycling_.front());
        recycling_.pop_front();
        dispatch_.deliver([done, error] { done(error); });
    }

    std::size_t observerCount() const { return observers_->size(); }

    std::vector<FileURL> opened;
    std::vector<OpenedWith> openedWith;
    Revealed revealed;
    std::vector<FileURL> selected;
    /// The files of each call.
    std::vector<std::vector<FileURL>> recycled;
    std::vector<std::shared_ptr<RunningApplication>> running;
    /// What was asked about background-only applications each time.
    std::vector<BackgroundOnly> backgroundAskedFor;
    std::vector<InstalledItem> addedApplications;
    std::vector<InstalledItem> addedPreferencePanes;
    /// Runs while something is being opened or shown, to look at the rest of the desktop at that moment.
    std::function<void()> whenAsked;

private:
    void remember(std::string call)
    {
        calls_.push_back(std::move(call));
        if (whenAsked)
            whenAsked();
    }

    static std::string joinedPaths(std::vector<FileURL> const& urls)
    {
        std::string paths;
        for (auto const& url : urls)
            paths += ' ' + url.path();
        return paths;
    }

    CallRecord& calls_;
    FakeDispatch& dispatch_;
    std::deque<std::function<void(std::optional<Error>)>> recycling_;
    using Observers = std::map<int, std::function<void(std::shared_ptr<RunningApplication>)>>;
    std::shared_ptr<Observers> observers_ = std::make_shared<Observers>();
    int nextObserver_ = 0;
};

}
