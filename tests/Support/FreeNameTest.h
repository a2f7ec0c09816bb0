#pragma once

#include "Fakes/DiskTest.h"
#include "Support/FinderBridge.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {

using Names = std::vector<std::string>;

/// Items of a folder "source" go into the folder "into".
class FreeNameTest : public DiskTest {
protected:
    FileURL item(std::string const& name) const { return folder.file("source/" + name, "item"); }
    void take(Names const& names) const
    {
        for (auto const& name : names)
            folder.file("into/" + name, "taken");
    }
    void takeUpTo(int last) const
    {
        take({ "a.txt" });
        for (int number = 2; number <= last; ++number)
            take({ "a " + std::to_string(number) + ".txt" });
    }
    /// The name that `put` gives the item; "none" when it fails.
    std::string nameGiven(Result<void> (*put)(FileURL const&, FileURL const&), FileURL const& url) const
    {
        auto const before = folder.names("into");
        if (auto const outcome = put(url, into); !outcome)
            return "none: " + outcome.error().message;
        auto const given = placeOf(desktop.calls.back());
        auto const after = folder.names("into");
        EXPECT_FALSE(std::binary_search(before.begin(), before.end(), given)) << given;
        EXPECT_TRUE(std::binary_search(after.begin(), after.end(), given)) << given;
        return given;
    }
    /// The name that a transfer into "into" is about to give.
    std::string placeOf(std::string const& call) const
    {
        auto const path = call.substr(call.rfind(call.starts_with("alias ") ? " at " : " to ") + 4);
        EXPECT_TRUE(path.starts_with(into.path() + "/")) << path;
        return path.substr(into.path().size() + 1);
    }
    /// Another program takes the place that a transfer is about to take, `times` in a row.
    void takeInTheGap(int times)
    {
        desktop.fileTransfer.instead = [this, times](std::string const& call) mutable -> std::optional<Result<void>> {
            if (times-- > 0)
                folder.file("into/" + placeOf(call), "another program's");
            return std::nullopt;
        };
    }

    FileURL const source = folder.folder("source");
    FileURL const into = folder.folder("into");
};

}
