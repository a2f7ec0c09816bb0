#pragma once

#include "Fakes/DiskTest.h"
#include "Support/ExchangeCoding.h"
#include "Support/FinderSyncBridge.h"

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {

/// The exchange in a folder of the test: "support/Marrowick" with "Requests" and the items folder "Marrowick Items".
class FinderSyncTest : public DiskTest {
protected:
    static constexpr auto requests = "support/Marrowick/Requests";
    static constexpr auto items = "support/Marrowick/Marrowick Items";
    static constexpr auto snapshotFile = "support/Marrowick/menu-snapshot.json";
    static constexpr std::chrono::milliseconds refreshInterval = std::chrono::seconds(120);

    FinderSyncTest()
    {
        folder.folder(items);
        folder.folder(requests);
    }

    static FinderSyncBridge& bridge() { return FinderSyncBridge::shared(); }

    /// Makes `folders` the known destinations.
    void publish(std::vector<FileURL> const& folders)
    {
        Snapshot snapshot { desktop.clock.time, {} };
        for (auto const& url : folders)
            snapshot.roots.push_back({ std::string(url.lastPathComponent()), url.path(), {} });
        auto const bytes = encode(snapshot);
        ASSERT_TRUE(bytes);
        folder.file(snapshotFile, *bytes);
    }

    /// The snapshot on the disk.
    Snapshot published() const { return decodeSnapshot(folder.content(snapshotFile)).value_or(Snapshot {}); }
    std::vector<std::string> publishedNames() const
    {
        std::vector<std::string> names;
        for (auto const& root : published().roots)
            names.emplace_back(root.name);
        return names;
    }

    static std::string quoted(std::string const& text) { return '"' + text + '"'; }
    /// A request as another program writes it. Texts stand in it as they are.
    static std::string requestText(
        std::string const& op, std::string const& dest, std::vector<std::string> const& sources)
    {
        std::string list;
        for (auto const& source : sources)
            list += (list.empty() ? "" : ",") + quoted(source);
        return R"({"op":)" + quoted(op) + R"(,"dest":)" + quoted(dest) + R"(,"sources":[)" + list + "]}";
    }
    FileURL drop(std::string const& name, std::string const& content) const
    {
        return folder.file(std::string(requests) + "/" + name, content);
    }
    FileURL drop(std::string const& op, FileURL const& dest, std::vector<FileURL> const& sources) const
    {
        std::vector<std::string> paths;
        for (auto const& source : sources)
            paths.push_back(source.path());
        return drop("request.json", requestText(op, dest.path(), paths));
    }
    std::vector<std::string> waiting() const { return folder.names(requests); }
};

}
