#pragma once

#include "Fakes/CallRecord.h"
#include "Platform/Tasks.h"

#include <optional>
#include <vector>

namespace marrowick {

/// Starts nothing and remembers what would have been started.
class FakeTasks final : public Tasks {
public:
    explicit FakeTasks(CallRecord& calls)
        : calls_(calls)
    {
    }

    TaskEnvironment environment() const override { return ownEnvironment; }

    Result<void> launch(Task const& task) override
    {
        launched.push_back(task);
        auto call = "launch " + task.executable.path();
        for (auto const& argument : task.arguments)
            call += ' ' + argument;
        calls_.push_back(std::move(call));
        return failure ? Result<void>(*failure) : Result<void>();
    }

    TaskEnvironment ownEnvironment;
    std::vector<Task> launched;
    /// Why nothing can be started.
    std::optional<Error> failure;

private:
    CallRecord& calls_;
};

}
