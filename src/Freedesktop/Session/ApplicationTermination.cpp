#include "Freedesktop/Session/ApplicationTermination.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iterator>

namespace marrowick {

namespace {

/// Says to the window manager that the wish is the user's own.
constexpr std::uint32_t fromPager = 2;

bool isWindowOf(ClientWindow const& window, ProcessIdentity const& process)
{
    return window.isLocal && window.pid == process.pid;
}

bool hasWindow(ProcessIdentity const& process, std::vector<ClientWindow> const& windows)
{
    return std::any_of(
        windows.begin(), windows.end(), [&](ClientWindow const& window) { return isWindowOf(window, process); });
}

/// Whether both say the same about whose they are; the number of a window, too, is given to others later.
bool haveSameOwner(ClientWindow const& a, ClientWindow const& b)
{
    return a.instanceName == b.instanceName && a.className == b.className && a.pid == b.pid && a.isLocal == b.isLocal;
}

void quitThisProgram()
{
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [] { QCoreApplication::exit(EXIT_SUCCESS); }, Qt::QueuedConnection);
}

}

std::vector<ClientWindow> windowsOfApplication(ApplicationFacts const& facts, std::vector<ClientWindow> const& listed)
{
    std::vector<ClientWindow> windows;
    std::copy_if(listed.begin(), listed.end(), std::back_inserter(windows), [&](ClientWindow const& window) {
        return std::any_of(facts.windows.begin(), facts.windows.end(), [&](ClientWindow const& known) {
            return haveSameOwner(known, window) && (known.id == window.id || (window.pid && window.isLocal));
        });
    });
    return windows;
}

void askToTerminate(ApplicationFacts const& facts, XConnection& connection)
{
    if (facts.isThisProgram) {
        quitThisProgram();
        return;
    }
    auto const listed = readClientWindows(connection).windows;
    auto const windows = windowsOfApplication(facts, listed);
    auto const time = connection.serverTime();
    for (auto const& window : windows)
        connection.sendToManager(window.id, XAtom::netCloseWindow, { time, fromPager });
    if (!windows.empty())
        return;
    for (auto const& process : facts.processes) {
        if (!hasWindow(process, listed))
            sendSignal(process, SIGTERM);
    }
}

void forceTermination(ApplicationFacts const& facts, XConnection& connection)
{
    if (facts.isThisProgram) {
        quitThisProgram();
        return;
    }
    auto windows = windowsOfApplication(facts, readClientWindows(connection).windows);
    for (auto const& process : facts.processes) {
        if (sendSignal(process, SIGKILL))
            std::erase_if(windows, [&](ClientWindow const& window) { return isWindowOf(window, process); });
    }
    for (auto const& window : windows)
        connection.killClient(window.id);
}

}
