#include "Freedesktop/Session/FreedesktopTasks.h"

#include <benchmark/benchmark.h>

#include <glib.h>

#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace marrowick::benchmarks {

namespace {

constexpr std::size_t mebibyte = 1024 * 1024;
constexpr std::size_t residentMebibytes = 200;
constexpr int selectedItems = 10;
constexpr useconds_t pauseMicroseconds = 200;

[[noreturn]] void fail(char const* what)
{
    std::perror(what);
    std::exit(EXIT_FAILURE);
}

/// A script that does nothing; removed at the end.
class Script {
public:
    Script()
    {
        char folder[] = "/dev/shm/marrowick-benchmark-XXXXXX";
        if (!mkdtemp(folder))
            fail(folder);
        folder_ = folder;
        std::ofstream(path()) << ":\n";
    }
    ~Script()
    {
        unlink(path().c_str());
        rmdir(folder_.c_str());
    }
    Script(Script const&) = delete;
    Script& operator=(Script const&) = delete;

    std::string path() const { return folder_ + "/script.sh"; }

    /// The script and the items that it is run on.
    std::vector<std::string> arguments() const
    {
        std::vector<std::string> arguments { path() };
        for (int i = 0; i < selectedItems; ++i)
            arguments.push_back("/home/somebody/Documents/A folder/Document " + std::to_string(i) + ".txt");
        return arguments;
    }

private:
    std::string folder_;
};

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Serves the event loop until no process that was started is left, so that the next start finds a quiet machine.
void waitForAll()
{
    siginfo_t info {};
    while (waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD) {
        g_main_context_iteration(nullptr, FALSE);
        usleep(pauseMicroseconds);
    }
}

Task taskFor(Script const& script, FreedesktopTasks const& tasks)
{
    Task task { FileURL("/bin/sh"), script.arguments(), tasks.environment() };
    task.environment["MW_NARGS"] = std::to_string(selectedItems);
    return task;
}

void launchOurs(benchmark::State& state, bool withEnvironment)
{
    Script const script;
    FreedesktopTasks tasks;
    auto const prepared = taskFor(script, tasks);
    for ([[maybe_unused]] auto _ : state) {
        auto const start = std::chrono::steady_clock::now();
        auto const outcome = withEnvironment ? tasks.launch(taskFor(script, tasks)) : tasks.launch(prepared);
        state.SetIterationTime(secondsSince(start));
        if (!outcome) {
            state.SkipWithError(outcome.error().message.c_str());
            break;
        }
        waitForAll();
    }
}

void launchBare(benchmark::State& state)
{
    Script const script;
    auto words = script.arguments();
    words.insert(words.begin(), "/bin/sh");
    std::vector<char*> pointers;
    for (auto& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    for ([[maybe_unused]] auto _ : state) {
        pid_t pid = 0;
        auto const start = std::chrono::steady_clock::now();
        int const error = posix_spawn(&pid, "/bin/sh", nullptr, nullptr, pointers.data(), environ);
        state.SetIterationTime(secondsSince(start));
        if (error != 0) {
            state.SkipWithError("posix_spawn failed");
            break;
        }
        while (waitpid(pid, nullptr, WNOHANG) == 0)
            usleep(pauseMicroseconds);
    }
}

}

}

int main(int argc, char** argv)
{
    using namespace marrowick::benchmarks;
    benchmark::Initialize(&argc, argv);
    // The size of a program that has shown some large menus: every page of it is written to.
    std::vector<char> const resident(residentMebibytes * mebibyte, 'x');
    benchmark::DoNotOptimize(resident.data());
    for (bool const withEnvironment : { false, true }) {
        benchmark::RegisterBenchmark(
            withEnvironment ? "launch marrowick with environment" : "launch marrowick", launchOurs, withEnvironment)
            ->UseManualTime()
            ->Unit(benchmark::kMicrosecond);
    }
    benchmark::RegisterBenchmark("launch bare", launchBare)->UseManualTime()->Unit(benchmark::kMicrosecond);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
