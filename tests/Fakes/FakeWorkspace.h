#pragma once

#include "Platform/Workspace.h"

#include <functional>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace marrowick {

/// Remembers what was opened and shown; the test says which applications run and when one becomes active.
class FakeWorkspace final : public Workspace {
public:
    /// The files of each call.
    using Revealed = std::vector<std::vector<FileURL>>;

    void open(FileURL const& url) override
    {
        opened.push_back(url);
        if (whenAsked)
            whenAsked();
    }
    void activateFileViewerSelecting(std::vector<FileURL> const& urls) override
    {
        revealed.push_back(urls);
        if (whenAsked)
            whenAsked();
    }
    std::vector<std::shared_ptr<RunningApplication>> runningApplications() override { return running; }

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
        auto const observers = *observers_;
        for (auto const& [id, handler] : observers) {
            if (observers_->contains(id))
                handler(application);
        }
    }

    std::size_t observerCount() const { return observers_->size(); }

    std::vector<FileURL> opened;
    Revealed revealed;
    std::vector<std::shared_ptr<RunningApplication>> running;
    /// Runs while something is being opened or shown, to look at the rest of the desktop at that moment.
    std::function<void()> whenAsked;

private:
    using Observers = std::map<int, std::function<void(std::shared_ptr<RunningApplication>)>>;
    std::shared_ptr<Observers> observers_ = std::make_shared<Observers>();
    int nextObserver_ = 0;
};

}
