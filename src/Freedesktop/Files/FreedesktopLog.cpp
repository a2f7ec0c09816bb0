#include "Freedesktop/Files/FreedesktopLog.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace marrowick {

namespace {

/// How long a reader of standard error may keep a full pipe before the rest of a line is dropped.
constexpr int patienceInMilliseconds = 100;

void appendEscaped(std::string& line, unsigned char byte)
{
    constexpr char digits[] = "0123456789ABCDEF";
    line += "\\x";
    line += digits[byte >> 4];
    line += digits[byte & 15];
}

bool isC1Control(std::string_view text, std::size_t position)
{
    return text[position] == '\xC2' && position + 1 < text.size()
        && static_cast<unsigned char>(text[position + 1]) >= 0x80
        && static_cast<unsigned char>(text[position + 1]) <= 0x9F;
}

/// Keeps SIGPIPE from this thread while it lives; the process may have left that signal's action at ending it.
class BrokenPipeGuard {
public:
    BrokenPipeGuard()
    {
        sigemptyset(&brokenPipe_);
        sigaddset(&brokenPipe_, SIGPIPE);
        sigset_t pending;
        wasPending_ = sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &brokenPipe_, &previous_);
    }
    ~BrokenPipeGuard()
    {
        int const number = errno;
        timespec const noWait {};
        if (!wasPending_)
            while (sigtimedwait(&brokenPipe_, nullptr, &noWait) < 0 && errno == EINTR) { }
        pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
        errno = number;
    }
    BrokenPipeGuard(BrokenPipeGuard const&) = delete;
    BrokenPipeGuard& operator=(BrokenPipeGuard const&) = delete;

private:
    sigset_t brokenPipe_;
    sigset_t previous_;
    bool wasPending_ = false;
};

bool waitUntilWritable()
{
    pollfd writable { .fd = STDERR_FILENO, .events = POLLOUT, .revents = 0 };
    return ::poll(&writable, 1, patienceInMilliseconds) > 0;
}

}

std::string escapedForLog(std::string_view message)
{
    std::string line;
    line.reserve(message.size() + 1);
    for (std::size_t i = 0; i < message.size(); ++i) {
        auto const byte = static_cast<unsigned char>(message[i]);
        if (byte < 0x20 || byte == 0x7F) {
            appendEscaped(line, byte);
        } else if (isC1Control(message, i)) {
            appendEscaped(line, byte);
            appendEscaped(line, static_cast<unsigned char>(message[++i]));
        } else {
            line += message[i];
        }
    }
    return line;
}

FreedesktopLog::FreedesktopLog()
{
    if (::fcntl(STDERR_FILENO, F_GETFD) >= 0 || errno != EBADF)
        return;
    int const nothing = ::open("/dev/null", O_WRONLY);
    if (nothing >= 0 && nothing != STDERR_FILENO) {
        ::dup2(nothing, STDERR_FILENO);
        ::close(nothing);
    }
}

void FreedesktopLog::write(std::string_view message)
{
    auto const line = escapedForLog(message) + '\n';
    BrokenPipeGuard const guard;
    std::string_view rest = line;
    while (!rest.empty()) {
        auto const count = ::write(STDERR_FILENO, rest.data(), rest.size());
        if (count > 0)
            rest.remove_prefix(static_cast<std::size_t>(count));
        else if (count == 0 || (errno != EINTR && (errno != EAGAIN || !waitUntilWritable())))
            return;
    }
}

}
