#include "BareScan.h"
#include "BareSnapshotWriter.h"
#include "BareWalk.h"
#include "MixedFolder.h"

#include "Freedesktop/Files/FreedesktopCollation.h"
#include "Freedesktop/Files/FreedesktopFileContents.h"
#include "Freedesktop/Files/FreedesktopFileManager.h"
#include "Freedesktop/Files/FreedesktopLog.h"
#include "Freedesktop/Files/SystemClock.h"
#include "Platform/Platform.h"
#include "Support/ExchangeCoding.h"
#include "Support/FinderSyncBridge.h"
#include "Support/InternetDate.h"
#include "Support/Preferences.h"
#include "Support/SnapshotWalk.h"

#include <benchmark/benchmark.h>

#include <stdlib.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <memory_resource>
#include <optional>
#include <string>

namespace marrowick::benchmarks {

namespace {

constexpr int branches = 12;
constexpr int largeFolderEntries = 100'000;
/// One entry of the large folder in so many is a folder.
constexpr int entriesPerFolder = 1000;

void makeTree(std::filesystem::path const& folder, int levels)
{
    std::filesystem::create_directories(folder);
    for (int branch = 0; levels > 0 && branch < branches; ++branch)
        makeTree(folder / ("Folder " + std::to_string(branch)), levels - 1);
}

/// Made-up folders to walk through; removed at the end.
class Trees {
public:
    explicit Trees(Place place)
    {
        std::string pattern
            = std::string(place == Place::disk ? "/var/tmp" : "/dev/shm") + "/marrowick-benchmark-XXXXXX";
        if (!mkdtemp(pattern.data())) {
            std::perror(pattern.c_str());
            std::exit(EXIT_FAILURE);
        }
        root_ = pattern;
        // One level more than is walked through.
        makeTree(tree(), SnapshotWalk::deepest + 1);
        std::filesystem::create_directory(large());
        for (int entry = 0; entry < largeFolderEntries; ++entry) {
            auto const path = large() + "/Entry " + std::to_string(entry) + ".txt";
            if (entry % entriesPerFolder == 0)
                std::filesystem::create_directory(path);
            else
                std::ofstream(path).put('x');
        }
    }
    ~Trees() { std::filesystem::remove_all(root_); }
    Trees(Trees const&) = delete;
    Trees& operator=(Trees const&) = delete;

    std::string tree() const { return root_ + "/tree"; }
    std::string large() const { return root_ + "/large"; }

private:
    std::string root_;
};

/// Loses what is to run in the background, so that what is left is the main thread's part.
class MainThreadOnly final : public Dispatch {
public:
    bool isMainThread() const override { return true; }
    void onMainThread(std::function<void()>) override { }
    void inBackground(std::function<void()>) override { }
    Subscription directoryWatch(FileURL const&, std::function<void()>, std::function<void()>) override { return {}; }
    Subscription repeatingTimer(std::chrono::milliseconds, std::function<void()>) override { return {}; }
};

/// The items folder is the one of the benchmark.
class ItemsFolderDefaults final : public DefaultsStore {
public:
    explicit ItemsFolderDefaults(std::string path)
        : path_(std::move(path))
    {
    }
    std::optional<DefaultsValue> object(std::string_view key) override
    {
        return key == "itemsFolderPath" ? std::optional(DefaultsValue(path_)) : std::nullopt;
    }
    void set(std::string_view, DefaultsValue const&) override { }

private:
    std::string path_;
};

Platform makeServices(std::string const& itemsFolder)
{
    Platform services;
    services.log = std::make_unique<FreedesktopLog>();
    services.clock = std::make_unique<SystemClock>();
    services.fileManager = std::make_unique<FreedesktopFileManager>();
    services.fileContents = std::make_unique<FreedesktopFileContents>();
    services.collation = std::make_unique<FreedesktopCollation>(BareScan::locale, *services.log);
    services.dispatch = std::make_unique<MainThreadOnly>();
    services.defaultsStore = std::make_unique<ItemsFolderDefaults>(itemsFolder);
    return services;
}

/// Measures the call of `work`; what becomes of its result is not part of it.
template<typename Work>
void add(std::string const& name, Work work)
{
    benchmark::RegisterBenchmark(name.c_str(),
        [=](benchmark::State& state) {
            for (auto _ : state) {
                auto result = std::make_optional(work());
                benchmark::DoNotOptimize(result);
                state.PauseTiming();
                result.reset();
                state.ResumeTiming();
            }
        })
        ->MeasureProcessCPUTime()
        ->Unit(benchmark::kMicrosecond);
}

int countNodes(SnapshotNodes const& nodes)
{
    int count = 0;
    for (auto const& node : nodes)
        count += 1 + countNodes(node.children);
    return count;
}

/// What a walk finds, in the memory that a publication gives it.
struct Walked {
    explicit Walked(std::vector<TopLevelFolder> const& folders)
        : roots(SnapshotWalk(*platform().fileManager, *platform().collation, memory.get()).roots(folders))
    {
    }

    std::unique_ptr<std::pmr::monotonic_buffer_resource> memory
        = std::make_unique<std::pmr::monotonic_buffer_resource>();
    SnapshotNodes roots;
};

/// Both sides find as much, or the comparison says nothing.
void requireSameCount(int ours, int bare)
{
    if (ours == bare)
        return;
    std::fprintf(stderr, "%d folders were found, and %d by the bare function\n", ours, bare);
    std::exit(2);
}

void addWalks(Place place, Trees const& trees)
{
    static BareWalk const bare(SnapshotWalk::deepest, SnapshotWalk::mostChildren, SnapshotWalk::mostNodes);
    // The first of the two takes nearly all that is allowed, the second what is left.
    std::vector<std::string> const twice { trees.tree(), trees.tree() };
    for (auto const& [what, folders] : { std::pair { "tree", twice }, { "large", { trees.large() } } }) {
        std::vector<TopLevelFolder> roots;
        for (auto const& folder : folders)
            roots.push_back({ "Root", FileURL(folder) });
        auto const walk = [roots] { return Walked(roots); };
        requireSameCount(countNodes(walk().roots) - static_cast<int>(folders.size()), bare.count(folders));
        add(std::string("walk marrowick/") + what + '/' + nameOf(place), walk);
        add(std::string("walk bare/") + what + '/' + nameOf(place), [paths = folders] { return bare.count(paths); });
    }
}

void addEncoding()
{
    static Snapshot snapshot { platform().clock->now(), {} };
    auto& root = snapshot.roots.emplace_back(SnapshotNode { "Documents", "/home/somebody/Documents", {} });
    for (int number = 0; number < SnapshotWalk::mostNodes; ++number) {
        auto const name = std::pmr::string(number % 10 == 3 ? "Übersicht " : "Quarterly Report ")
            + std::pmr::string(std::to_string(number));
        root.children.emplace_back(name, root.path + "/A folder of reports/Another one/" + name);
    }
    static auto const generated = *internetDateText(snapshot.generated);
    if (encode(snapshot) != writeSnapshot(snapshot, generated)) {
        std::fprintf(stderr, "the two encodings differ\n");
        std::exit(2);
    }
    add("encode marrowick", [] { return encode(snapshot); });
    add("encode bare", [] { return writeSnapshot(snapshot, generated); });
}

void addMainThread()
{
    add("refresh on the main thread", [] {
        FinderSyncBridge::shared().refreshSnapshot();
        return 0;
    });
    add("top-level scan",
        [] { return FinderSyncBridge::topLevelFolders(Preferences::shared().itemsFolderURL(), MenuContext {}); });
}

}

}

int main(int argc, char** argv)
{
    using namespace marrowick;
    using namespace marrowick::benchmarks;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    Trees const disk(Place::disk);
    Trees const memory(Place::memory);
    PlatformScope const services(makeServices(disk.tree()));
    addWalks(Place::disk, disk);
    addWalks(Place::memory, memory);
    addEncoding();
    addMainThread();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
