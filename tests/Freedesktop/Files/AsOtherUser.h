#pragma once

#include <functional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace marrowick {

/// Runs `question` as a user without privileges and returns its answer. The superuser's tests change to one in a process
/// of their own; any other user's run it where they are.
inline std::string askedWithoutPrivileges(std::function<std::string()> const& question)
{
    if (::geteuid() != 0)
        return question();
    int ends[2];
    if (::pipe(ends) != 0)
        return "no pipe";
    pid_t const child = ::fork();
    if (child == 0) {
        constexpr unsigned nobody = 65534;
        std::string answer = "could not give up privileges";
        if (::setresgid(nobody, nobody, nobody) == 0 && ::setresuid(nobody, nobody, nobody) == 0)
            answer = question();
        ::_exit(::write(ends[1], answer.data(), answer.size()) == static_cast<ssize_t>(answer.size()) ? 0 : 1);
    }
    ::close(ends[1]);
    std::string answer(4096, '\0');
    auto const count = ::read(ends[0], answer.data(), answer.size());
    answer.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    return answer;
}

}
