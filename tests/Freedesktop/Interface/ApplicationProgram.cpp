// A program with nothing but the application service, for tests that need several processes. It says on standard output
// what happens to it. The words of the command line:
//   late-handler  learns what a reopening does only a while after the launch
//   alert         shows two alerts, one after the other, with the buttons "First" and "Last"
//   start-child   starts `cat` on what the kernel tells of that process, and writes down its answer

#include "Freedesktop/Interface/FreedesktopAlerts.h"
#include "Freedesktop/Interface/FreedesktopApplication.h"
#include "Freedesktop/Interface/FreedesktopEvents.h"

#include <QProcess>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <memory>
#include <string>

namespace {

class ErrorLog : public marrowick::Log {
public:
    void write(std::string_view message) override
    {
        std::fprintf(stderr, "%.*s\n", static_cast<int>(message.size()), message.data());
    }
};

void say(std::string const& line)
{
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

bool has(int argc, char** argv, std::string_view word)
{
    for (int index = 1; index < argc; ++index) {
        if (argv[index] == word)
            return true;
    }
    return false;
}

void askTwice(marrowick::Alerts& alerts)
{
    for (int round = 0; round < 2; ++round) {
        QTimer::singleShot(0, [] { say("asked"); });
        auto const answer = alerts.runModal({ marrowick::AlertStyle::warning, "Question?", "", { "First", "Last" } });
        say("answer " + std::to_string(answer));
    }
}

}

int main(int argc, char** argv)
{
    using namespace marrowick;
    bool const isLate = has(argc, argv, "late-handler");
    bool const startsChild = has(argc, argv, "start-child");
    bool const showsAlert = has(argc, argv, "alert");
    ErrorLog log;
    FreedesktopEvents events;
    auto const gate = std::make_shared<DeliveryGate>();
    FreedesktopApplication application(argc, argv, events, gate, log);
    if (!application.claimSingleInstance()) {
        say("not the first");
        return 0;
    }
    FreedesktopAlerts alerts(gate);
    QTimer timer;
    auto const setHandler = [&] {
        say("handler set");
        application.setReopenHandler([&] {
            auto const event = events.currentEvent();
            say("reopened by event " + std::to_string(event ? static_cast<int>(event->type) : -1) + " with flags "
                + std::to_string(event ? event->flags.rawValue() : 0));
        });
    };
    application.run([&] {
        say("launched");
        if (isLate)
            QTimer::singleShot(1000, &timer, setHandler);
        else
            setHandler();
        if (showsAlert)
            QTimer::singleShot(0, &timer, [&] { askTwice(alerts); });
        if (startsChild) {
            raise(SIGPIPE);
            QProcess child;
            child.start(QStringLiteral("cat"), { QStringLiteral("/proc/self/status") });
            child.waitForFinished();
            say(child.readAll().toStdString());
            say("variables:" + qgetenv("QT_QPA_PLATFORM").toStdString() + qgetenv("DESKTOP_STARTUP_ID").toStdString());
            application.terminate();
        }
    });
    say("ended");
    return 0;
}
