#include "Freedesktop/Files/TimelyAnswers.h"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <future>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace marrowick {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds shortTime { 20 };
constexpr milliseconds ample { 10'000 };

/// Work that lasts until it is told to end.
class HeldWork {
public:
    ~HeldWork() { end(); }

    std::function<void()> work() const
    {
        return [end = end_.get_future().share()] { end.wait(); };
    }
    void end()
    {
        if (!hasEnded_)
            end_.set_value();
        hasEnded_ = true;
    }

private:
    mutable std::promise<void> end_;
    bool hasEnded_ = false;
};

/// Waits until the volume's late work is over, which only those are told who ask.
void waitUntilFree(std::string const& volume)
{
    auto const end = std::chrono::steady_clock::now() + ample;
    while (!isDoneInTime(volume, ample, [] {})) {
        ASSERT_LT(std::chrono::steady_clock::now(), end) << volume;
        std::this_thread::yield();
    }
}

TEST(TimelyAnswers, AnAnswerInTimeIsHandedOver)
{
    EXPECT_EQ(answerInTime("/a", ample, [] { return std::string("text"); }), "text");
    EXPECT_TRUE(isDoneInTime("/a", ample, [] {}));
}

TEST(TimelyAnswers, WorkThatIsLateIsLeftToItself)
{
    HeldWork held;
    auto const begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(isDoneInTime("/late", shortTime, held.work()));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, shortTime);
    held.end();
    waitUntilFree("/late");
}

TEST(TimelyAnswers, AVolumeWhoseAnswerIsLateIsNotAskedAgainUntilItCame)
{
    HeldWork held;
    ASSERT_FALSE(isDoneInTime("/late", shortTime, held.work()));
    bool wasAsked = false;
    auto const begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 100; ++i)
        EXPECT_FALSE(isDoneInTime("/late", shortTime, [&] { wasAsked = true; }));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 50 * shortTime) << "nobody waits for it a second time";
    EXPECT_FALSE(wasAsked);
    EXPECT_TRUE(isDoneInTime("/other", ample, [] {})) << "other volumes are asked as ever";
    held.end();
    waitUntilFree("/late");
}

TEST(TimelyAnswers, WhatIsLateForOneIsWaitedForByAMorePatientOne)
{
    HeldWork held;
    ASSERT_FALSE(isDoneInTime("/waking", shortTime, held.work()));
    std::thread waking([&] {
        std::this_thread::sleep_for(3 * shortTime);
        held.end();
    });
    EXPECT_TRUE(isDoneInTime("/waking", ample, [] {}));
    waking.join();
}

TEST(TimelyAnswers, APatientQuestionDoesNotHoldAnImpatientOne)
{
    HeldWork held;
    std::thread patient([work = held.work()] {
        while (!isDoneInTime("/slow", ample, work))
            std::this_thread::yield();
    });
    auto const begin = std::chrono::steady_clock::now();
    // Before the patient one has begun this is simply done.
    while (isDoneInTime("/slow", shortTime, [] {}) && std::chrono::steady_clock::now() - begin < ample)
        std::this_thread::yield();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, ample / 2);
    held.end();
    patient.join();
}

TEST(TimelyAnswers, QuestionsOfSeveralThreadsToOneVolumeAreAllAnswered)
{
    std::atomic<int> answers = 0;
    std::atomic<int> underWay = 0;
    std::atomic<int> mostUnderWay = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            for (int question = 0; question < 50; ++question) {
                answers += isDoneInTime("/busy", ample, [&] {
                    mostUnderWay = std::max(mostUnderWay.load(), ++underWay);
                    --underWay;
                });
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(answers, 200);
    EXPECT_EQ(mostUnderWay, 1);
}

TEST(TimelyAnswers, OnlyAFewVolumesAreWaitedForAtATime)
{
    constexpr int volumeCount = 20;
    HeldWork held;
    std::atomic<int> started = 0;
    auto const work = held.work();
    for (int volume = 0; volume < volumeCount; ++volume)
        EXPECT_FALSE(isDoneInTime("/many/" + std::to_string(volume), shortTime, [&started, work] {
            ++started;
            work();
        }));
    auto const end = std::chrono::steady_clock::now() + ample;
    while (started < 8 && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    EXPECT_EQ(started, 8);
    held.end();
    for (int volume = 0; volume < volumeCount; ++volume)
        waitUntilFree("/many/" + std::to_string(volume));
}

TEST(TimelyAnswers, TheWorkHoldsNoneOfTheOpenFiles)
{
    int const file = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ASSERT_GE(file, 0);
    EXPECT_EQ(answerInTime("/a", ample, [file] { return ::fcntl(file, F_GETFD); }), -1);
    EXPECT_EQ(::fcntl(file, F_GETFD), FD_CLOEXEC) << "they stay open for everybody else";
    ::close(file);
}

TEST(TimelyAnswers, TheWorkIsDisturbedByNoSignal)
{
    EXPECT_EQ(answerInTime("/a", ample,
                  [] {
                      sigset_t blocked;
                      ::pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
                      return ::sigismember(&blocked, SIGTERM) == 1 && ::sigismember(&blocked, SIGCHLD) == 1;
                  }),
        true);
    sigset_t blocked;
    ::pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    EXPECT_EQ(::sigismember(&blocked, SIGTERM), 0) << "the caller's are as before";
}

}
}
