#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

namespace marrowick {

/// How long anybody waits to be told about one item: long enough for a network, too short to be felt as a fault.
inline constexpr std::chrono::milliseconds patienceForItem { 200 };

/// How long a whole folder may take: its contents are what somebody asked to see, and a server may have to wake up.
inline constexpr std::chrono::milliseconds patienceForListing { 5000 };

/// Does `work`, which asks something of `volume`, on a thread of its own, and tells whether it was done before the caller's
/// patience ended. Work that is late goes on: it must own all that it touches, and open its files itself, since the
/// process's open files are none of the thread's.
///
/// One piece of work is under way for a volume. What else is asked of the volume meanwhile comes after it; whoever would
/// have given up on that one by now is told at once that theirs is not done.
bool isDoneInTime(std::string const& volume, std::chrono::milliseconds patience, std::function<void()> work);

/// What `question` finds out; absent when `volume` does not answer in time. The question is as the work above.
template<typename Question>
auto answerInTime(std::string const& volume, std::chrono::milliseconds patience, Question question)
    -> std::optional<std::invoke_result_t<Question&>>
{
    auto const answer = std::make_shared<std::optional<std::invoke_result_t<Question&>>>();
    bool const isDone = isDoneInTime(
        volume, patience, [answer, question = std::move(question)]() mutable { answer->emplace(question()); });
    return isDone ? std::move(*answer) : std::nullopt;
}

}
