#include "Freedesktop/Files/TimelyAnswers.h"

#include <condition_variable>
#include <csignal>
#include <cstddef>
#include <map>
#include <mutex>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace marrowick {

namespace {

using Clock = std::chrono::steady_clock;

/// More volumes that do not answer than anybody has.
constexpr std::size_t mostThreads = 8;

/// The work under way. Its threads hold it too, since they may outlive everything else.
struct UnderWay {
    std::mutex mutex;
    std::condition_variable done;
    std::map<std::string, Clock::time_point> begunByVolume;
};

/// Waits until nothing else is asked of the volume; false when that takes longer than `patience` from its beginning.
bool isFree(UnderWay& underWay, std::unique_lock<std::mutex>& lock, std::string const& volume,
    std::chrono::milliseconds patience)
{
    for (;;) {
        auto const other = underWay.begunByVolume.find(volume);
        if (other == underWay.begunByVolume.end())
            return underWay.begunByVolume.size() < mostThreads;
        auto const lateAt = other->second + patience;
        if (Clock::now() >= lateAt)
            return false;
        underWay.done.wait_until(lock, lateAt);
    }
}

/// A thread that may get stuck keeps none of the process's files and connections open, however the process ends.
void leaveOpenFiles()
{
    constexpr unsigned firstAfterStandardOnes = 3;
    ::close_range(firstAfterStandardOnes, ~0U, CLOSE_RANGE_UNSHARE);
}

/// Signals are for the threads that know what to do with them.
bool startThread(std::function<void()> run)
{
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    bool isStarted = true;
    try {
        std::thread(std::move(run)).detach();
    } catch (std::system_error const&) {
        isStarted = false;
    }
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return isStarted;
}

}

bool isDoneInTime(std::string const& volume, std::chrono::milliseconds patience, std::function<void()> work)
{
    static auto const underWay = std::make_shared<UnderWay>();
    std::unique_lock lock(underWay->mutex);
    if (!isFree(*underWay, lock, volume, patience))
        return false;

    auto const isDone = std::make_shared<bool>(false);
    underWay->begunByVolume.emplace(volume, Clock::now());
    bool const isStarted = startThread([underWay = underWay, volume, isDone, work = std::move(work)] {
        leaveOpenFiles();
        work();
        std::scoped_lock const doneLock(underWay->mutex);
        *isDone = true;
        underWay->begunByVolume.erase(volume);
        underWay->done.notify_all();
    });
    if (!isStarted) {
        underWay->begunByVolume.erase(volume);
        return false;
    }
    return underWay->done.wait_for(lock, patience, [&] { return *isDone; });
}

}
