#include "Freedesktop/Transfer/FreedesktopFileTransfer.h"

#include <benchmark/benchmark.h>

#include <spawn.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace marrowick::benchmarks {

namespace {

constexpr int smallFiles = 5'000;
constexpr int filesPerFolder = 100;
constexpr std::size_t mebibyte = 1024 * 1024;
constexpr std::size_t largeFileMebibytes = 1024;

void writeFile(std::string const& path, std::string const& bytes, std::size_t times)
{
    std::ofstream file(path, std::ios::binary);
    for (std::size_t written = 0; written < times; ++written)
        file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) {
        std::fprintf(stderr, "%s could not be written\n", path.c_str());
        std::exit(EXIT_FAILURE);
    }
}

std::string randomBytes(std::size_t length, std::mt19937& random)
{
    std::string bytes(length, '\0');
    for (auto& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

/// A folder in memory that holds what is copied, and the copies; removed at the end.
class Sources {
public:
    Sources()
    {
        std::string pattern = "/dev/shm/marrowick-benchmark-XXXXXX";
        if (!mkdtemp(pattern.data())) {
            std::perror(pattern.c_str());
            std::exit(EXIT_FAILURE);
        }
        root_ = pattern;
        std::mt19937 random(1);
        for (int file = 0; file < smallFiles; ++file) {
            auto const folder = small() + "/" + std::to_string(file / filesPerFolder);
            std::filesystem::create_directories(folder);
            // From nothing to some 16 kB, most of them short.
            auto const length = (random() % 128) * (random() % 128);
            writeFile(folder + "/" + std::to_string(file) + ".txt", randomBytes(length, random), 1);
        }
        writeFile(large(), randomBytes(mebibyte, random), largeFileMebibytes);
    }
    ~Sources() { std::filesystem::remove_all(root_); }
    Sources(Sources const&) = delete;
    Sources& operator=(Sources const&) = delete;

    std::string small() const { return root_ + "/small"; }
    std::string large() const { return root_ + "/large"; }
    std::string copy() const { return root_ + "/copy"; }

private:
    std::string root_;
};

double cpuMilliseconds(int who)
{
    rusage usage {};
    getrusage(who, &usage);
    auto const milliseconds = [](timeval const& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

bool copyWithMarrowick(std::string const& source, std::string const& copy)
{
    FreedesktopFileTransfer transfer;
    return static_cast<bool>(transfer.copyItem(FileURL(source), FileURL(copy)));
}

bool copyWithCp(std::string const& source, std::string const& copy)
{
    std::vector<std::string> words { "cp", "-a", "--", source, copy };
    std::vector<char*> arguments;
    for (auto& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t process = 0;
    int status = -1;
    return posix_spawnp(&process, "cp", nullptr, nullptr, arguments.data(), environ) == 0
        && waitpid(process, &status, 0) == process && status == 0;
}

using Copier = bool (*)(std::string const&, std::string const&);

/// `who` says whose processor time counts: this process's or that of the processes that it waited for.
void measure(benchmark::State& state, std::string const& source, std::string const& copy, Copier copier, int who)
{
    double cpu = 0;
    for (auto _ : state) {
        auto const cpuBefore = cpuMilliseconds(who);
        auto const start = std::chrono::steady_clock::now();
        bool const isCopied = copier(source, copy);
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        cpu += cpuMilliseconds(who) - cpuBefore;
        std::filesystem::remove_all(copy);
        if (!isCopied) {
            state.SkipWithError("it could not be copied");
            break;
        }
    }
    state.counters["cpu_ms"] = benchmark::Counter(cpu, benchmark::Counter::kAvgIterations);
}

void registerAll(Sources const& sources)
{
    auto const add = [&](std::string const& name, std::string const& source, Copier copier, int who) {
        benchmark::RegisterBenchmark(name.c_str(),
            [source, copy = sources.copy(), copier, who](
                benchmark::State& state) { measure(state, source, copy, copier, who); })
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    };
    for (auto const& [what, source] : { std::pair { "small", sources.small() }, { "large", sources.large() } }) {
        add(std::string("copy marrowick/") + what, source, copyWithMarrowick, RUSAGE_SELF);
        add(std::string("copy cp/") + what, source, copyWithCp, RUSAGE_CHILDREN);
    }
}

}

}

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return EXIT_FAILURE;
    marrowick::benchmarks::Sources const sources;
    marrowick::benchmarks::registerAll(sources);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
