// Carries out requests with nothing but what that takes: waits for a change of their folder, reads, decodes, removes and judges
// each, and moves the items. It asks nobody, reports nothing, and trusts what it reads.

#include <boost/json/src.hpp>

#include <sys/inotify.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace {

namespace fs = std::filesystem;
namespace json = boost::json;

std::string contentOf(fs::path const& file)
{
    std::ifstream stream(file, std::ios::binary);
    return { std::istreambuf_iterator<char>(stream), {} };
}

void collectPaths(json::array const& nodes, std::set<std::string_view>& paths)
{
    for (auto const& node : nodes) {
        paths.insert(node.at("path").as_string());
        collectPaths(node.at("children").as_array(), paths);
    }
}

void carryOut(json::value const& request, fs::path const& snapshotFile)
{
    auto const snapshot = json::parse(contentOf(snapshotFile));
    std::set<std::string_view> paths;
    collectPaths(snapshot.at("roots").as_array(), paths);
    std::string_view const destination = request.at("dest").as_string();
    if (!paths.contains(destination))
        return;
    for (auto const& source : request.at("sources").as_array()) {
        fs::path const item(std::string(source.as_string()));
        fs::rename(item, fs::path(destination) / item.filename());
    }
}

void processAll(fs::path const& requests, fs::path const& snapshot)
{
    for (auto const& entry : fs::directory_iterator(requests)) {
        if (entry.path().extension() != ".json")
            continue;
        auto const content = contentOf(entry.path());
        fs::remove(entry.path());
        carryOut(json::parse(content), snapshot);
    }
}

}

int main()
{
    fs::path const support = fs::path(std::getenv("XDG_DATA_HOME")) / "Marrowick";
    auto const requests = support / "Requests";
    int const queue = inotify_init1(IN_CLOEXEC);
    constexpr auto events = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;
    if (queue < 0 || inotify_add_watch(queue, requests.c_str(), events) < 0) {
        std::perror(requests.c_str());
        return 2;
    }
    char buffer[4096];
    do
        processAll(requests, support / "menu-snapshot.json");
    while (read(queue, buffer, sizeof buffer) > 0);
    return 0;
}
