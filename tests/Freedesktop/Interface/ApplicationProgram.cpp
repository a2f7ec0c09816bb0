// A program with nothing but the application service, for tests that need several processes. It says on standard output
// what happens to it. The words of the command line:
//   late-handler  learns what a reopening does only a while after the launch
//   start-child   starts `cat` on what the kernel tells of that process, and writes down its answer

#include "Freedesktop/Interface/FreedesktopApplication.h"
#include "Freedesktop/Interface/FreedesktopEvents.h"

#include <QProcess>
#include <QTimer>

#include <csignal>
#include <cstdio>
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

}

int main(int argc, char** argv)
{
    using namespace marrowick;
    bool const isLate = has(argc, argv, "late-handler");
    bool const startsChild = has(argc, argv, "start-child");
    ErrorLog log;
    FreedesktopEvents events;
    FreedesktopApplication application(argc, argv, events, log);
    if (!application.claimSingleInstance()) {
        say("not the first");
        return 0;
    }
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
