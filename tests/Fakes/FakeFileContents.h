#pragma once

#include "Platform/FileContents.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {

/// Passes everything on to the real disk, but for the files that the test keeps it from. Without a disk a question fails
/// the test. One thread at a time.
class FakeFileContents final : public FileContents {
public:
    /// `real` may be null.
    explicit FakeFileContents(std::unique_ptr<FileContents> real)
        : real_(std::move(real))
    {
    }

    Result<std::string> read(FileURL const& url, std::size_t limit) const override
    {
        auto const* real = asked(url);
        return real ? real->read(url, limit) : refusal();
    }

    Result<std::string> readBeginning(FileURL const& url, std::size_t count) const override
    {
        auto const* real = asked(url);
        return real ? real->readBeginning(url, count) : refusal();
    }

    Result<std::string> readUnlessLink(FileURL const& url, std::size_t limit) const override
    {
        auto const* real = asked(url);
        return real ? real->readUnlessLink(url, limit) : refusal();
    }

    Result<void> replace(FileURL const& url, std::string_view content) const override
    {
        auto const* real = asked(url);
        return real ? real->replace(url, content) : refusal();
    }

    /// Files that can be neither read nor written.
    std::set<FileURL> inaccessible;

    /// How often the file was to be read or written.
    std::ptrdiff_t timesUsed(FileURL const& url) const { return std::count(used.begin(), used.end(), url); }

    /// The files that were to be read or written, in order.
    mutable std::vector<FileURL> used;

private:
    FileContents const* asked(FileURL const& url) const
    {
        used.push_back(url);
        if (inaccessible.contains(url))
            return nullptr;
        if (!real_)
            ADD_FAILURE() << "a file whose content the test did not expect to be asked for: " << url.path();
        return real_.get();
    }

    static Error refusal() { return { ErrorKind::noPermission, "no permission" }; }

    std::unique_ptr<FileContents> real_;
};

}
