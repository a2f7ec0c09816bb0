#include "Freedesktop/Interface/QuitSignals.h"

#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <utility>

namespace marrowick {

namespace {

std::atomic<int> writeEnd = -1;
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler waits for no lock");

void askToQuit(int)
{
    int const before = errno;
    char const byte = 0;
    // The buffer is only full when quitting has been asked for many times already.
    [[maybe_unused]] auto const written = write(writeEnd, &byte, 1);
    errno = before;
}

void doNothing(int) { }

}

QuitSignals::QuitSignals(std::function<void()> quit)
    : quit_(std::move(quit))
{
    std::array<int, 2> ends {};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends.data()) != 0)
        return;
    readEnd_ = ends[0];
    writeEnd = ends[1];
    notifier_ = std::make_unique<QSocketNotifier>(readEnd_, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] {
        std::array<char, 64> bytes {};
        while (read(readEnd_, bytes.data(), bytes.size()) > 0) { }
        quit_();
    });
    for (std::size_t index = 0; index < handled.size(); ++index) {
        struct sigaction action { };
        // A handler that does nothing, unlike an ignored signal, is not handed down to the programs that are started.
        action.sa_handler = handled[index] == SIGPIPE ? doNothing : askToQuit;
        action.sa_flags = SA_RESTART;
        sigaction(handled[index], nullptr, &previous_[index]);
        if (handled[index] == SIGPIPE || previous_[index].sa_handler != SIG_IGN)
            sigaction(handled[index], &action, nullptr);
    }
}

QuitSignals::~QuitSignals()
{
    if (readEnd_ < 0)
        return;
    for (std::size_t index = 0; index < handled.size(); ++index)
        sigaction(handled[index], &previous_[index], nullptr);
    notifier_.reset();
    close(readEnd_);
    close(writeEnd.exchange(-1));
}

}
