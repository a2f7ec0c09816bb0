#pragma once

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <functional>
#include <memory>

namespace marrowick {

/// Turns the signals that ask a program to end into a call from the event loop. Only one object at a time.
class QuitSignals {
public:
    /// `quit` is called on SIGTERM, SIGINT and SIGHUP; those that were ignored at the start stay ignored. A write to a
    /// reader that has gone is an error instead of the end of the program.
    explicit QuitSignals(std::function<void()> quit);
    ~QuitSignals();
    QuitSignals(QuitSignals const&) = delete;
    QuitSignals& operator=(QuitSignals const&) = delete;

private:
    static constexpr std::array handled { SIGTERM, SIGINT, SIGHUP, SIGPIPE };

    std::function<void()> quit_;
    int readEnd_ = -1;
    std::unique_ptr<QSocketNotifier> notifier_;
    std::array<struct sigaction, handled.size()> previous_ {};
};

}
