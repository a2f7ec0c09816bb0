#include "ProgramRun.h"

#include <benchmark/benchmark.h>

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

namespace marrowick::benchmarks {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr int patienceInMilliseconds = 20'000;
constexpr auto pause = 3ms;
/// Folders in each of the folders of the menu.
constexpr int foldersInEach = 12;

[[noreturn]] void fail(char const* what)
{
    std::perror(what);
    std::exit(2);
}

/// Tells when an entry comes into a folder.
class ArrivalWatch {
public:
    explicit ArrivalWatch(fs::path const& folder)
        : queue_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK))
    {
        if (queue_ < 0 || inotify_add_watch(queue_, folder.c_str(), IN_MOVED_TO) < 0)
            fail(folder.c_str());
    }
    ~ArrivalWatch() { close(queue_); }
    ArrivalWatch(ArrivalWatch const&) = delete;
    ArrivalWatch& operator=(ArrivalWatch const&) = delete;

    bool wait() const
    {
        pollfd ready { .fd = queue_, .events = POLLIN, .revents = 0 };
        if (poll(&ready, 1, patienceInMilliseconds) != 1)
            return false;
        char buffer[4096];
        while (read(queue_, buffer, sizeof buffer) > 0) { }
        return true;
    }

private:
    int queue_;
};

/// The folders of the exchange in the home of this session, and a file that is moved to and fro.
struct Place {
    fs::path support = fs::path(std::getenv("XDG_DATA_HOME")) / "Marrowick";
    fs::path requests = support / "Requests";
    fs::path snapshot = support / "menu-snapshot.json";
    fs::path destination = support / "Marrowick Items/Folder 0";
    fs::path file = support / "file.txt";
    /// On the same file system, in a folder that nobody watches.
    fs::path unfinished = support / "request.unfinished";

    Place()
    {
        for (int folder = 0; folder < foldersInEach; ++folder) {
            for (int inside = 0; inside < foldersInEach; ++inside)
                fs::create_directories(support / "Marrowick Items" / ("Folder " + std::to_string(folder))
                    / ("Inside " + std::to_string(inside)));
        }
        fs::create_directories(requests);
        std::ofstream(file) << "content\n";
    }

    void writeRequest() const
    {
        std::ofstream(unfinished) << R"({"op":"move","dest":)" << destination << R"(,"sources":[)" << file << "]}";
    }

    /// Lets the request appear whole under its name.
    void drop() const { fs::rename(unfinished, requests / "request.json"); }
};

/// From the renaming that makes a request of the file to the item's arrival in its folder.
void measureDrops(benchmark::State& state, Place const& place, std::string const& program)
{
    fs::remove(place.snapshot);
    {
        // Publishes the snapshot, by which the bare program judges as well.
        ProgramRun const publisher({ fs::read_symlink("/proc/self/exe").parent_path() / "marrowick" });
        while (!fs::exists(place.snapshot))
            std::this_thread::sleep_for(1ms);
    }
    ProgramRun const run({ program });
    ArrivalWatch const arrivals(place.destination);
    auto const arrived = place.destination / place.file.filename();
    // The first one is carried out once the program has started.
    place.writeRequest();
    place.drop();
    if (!arrivals.wait()) {
        state.SkipWithError("the program does not begin");
        return;
    }
    fs::rename(arrived, place.file);
    std::vector<double> times;
    for (auto _ : state) {
        place.writeRequest();
        std::this_thread::sleep_for(pause);
        auto const start = std::chrono::steady_clock::now();
        place.drop();
        if (!arrivals.wait()) {
            state.SkipWithError("nothing came");
            break;
        }
        times.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        state.SetIterationTime(times.back());
        fs::rename(arrived, place.file);
    }
    if (times.empty())
        return;
    auto const middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    constexpr double microsecond = 1e-6;
    state.counters["median_us"] = *middle / microsecond;
}

}

}

int main(int argc, char** argv)
{
    using namespace marrowick::benchmarks;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    Place const place;
    auto const folder = fs::read_symlink("/proc/self/exe").parent_path();
    for (auto const& [name, program] : { std::pair { "drop marrowick", folder / "marrowick" },
             { "drop bare", folder / "marrowick-benchmark-bare-exchange" } }) {
        benchmark::RegisterBenchmark(
            name, [&place, program](benchmark::State& state) { measureDrops(state, place, program); })
            ->UseManualTime()
            ->Unit(benchmark::kMicrosecond);
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
