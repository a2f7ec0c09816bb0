#pragma once

#include "Fakes/CallRecord.h"
#include "Platform/FileTransfer.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace marrowick {

/// Passes transfers on to the real disk and remembers them. Without a disk a transfer fails the test, unless the test
/// says how it ends.
class FakeFileTransfer final : public FileTransfer {
public:
    /// `real` may be null.
    FakeFileTransfer(CallRecord& calls, std::unique_ptr<FileTransfer> real)
        : calls_(calls)
        , real_(std::move(real))
    {
    }

    Result<void> moveItem(FileURL const& at, FileURL const& to) override
    {
        return perform("move " + at.path() + " to " + to.path(), [&] { return real_->moveItem(at, to); });
    }
    Result<void> copyItem(FileURL const& at, FileURL const& to) override
    {
        return perform("copy " + at.path() + " to " + to.path(), [&] { return real_->copyItem(at, to); });
    }
    Result<void> createAlias(FileURL const& at, FileURL const& to) override
    {
        return perform("alias " + to.path() + " at " + at.path(), [&] { return real_->createAlias(at, to); });
    }
    Result<void> removeItem(FileURL const& at) override
    {
        return perform("remove " + at.path(), [&] { return real_->removeItem(at); });
    }

    /// Sees each transfer before the disk does, as the call record tells it. What it returns is the outcome, and the disk
    /// is not asked.
    std::function<std::optional<Result<void>>(std::string const& call)> instead;

private:
    template<typename Transfer>
    Result<void> perform(std::string const& call, Transfer transfer)
    {
        calls_.push_back(call);
        if (instead) {
            if (auto const outcome = instead(call))
                return *outcome;
        }
        if (real_)
            return transfer();
        ADD_FAILURE() << "a transfer that the test did not expect: " << call;
        return Error { ErrorKind::other, "no disk" };
    }

    CallRecord& calls_;
    std::unique_ptr<FileTransfer> real_;
};

}
