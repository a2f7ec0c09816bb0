#include "Freedesktop/Interface/FreedesktopApplication.h"

#include "Freedesktop/Interface/ApplicationInterface.h"
#include "Freedesktop/Interface/FreedesktopEvents.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QWidget>
#include <QWindow>

#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <utility>

namespace marrowick {

namespace {

constexpr char const* identifier = "org.marrowick.Marrowick";
constexpr char const* objectPath = "/org/marrowick/Marrowick";
constexpr char const* platformVariable = "QT_QPA_PLATFORM";
constexpr std::chrono::milliseconds patienceWithOtherInstance { 3000 };

struct DisconnectXcb {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using XcbConnection = std::unique_ptr<xcb_connection_t, DisconnectXcb>;

/// Takes what the environment says of this start out of it, so that started programs do not take it for theirs.
QVariantMap takeStartupData()
{
    QVariantMap data;
    for (auto const& [variable, key] :
        { std::pair { "DESKTOP_STARTUP_ID", "desktop-startup-id" }, { "XDG_ACTIVATION_TOKEN", "activation-token" } }) {
        if (auto const value = qEnvironmentVariable(variable); !value.isEmpty())
            data.insert(QLatin1String(key), value);
        qunsetenv(variable);
    }
    return data;
}

std::unique_ptr<QApplication> makeApplication(int& argc, char** argv, Log& log)
{
    auto const chosen = qgetenv(platformVariable);
    // Tried before the toolkit tries, which aborts where it fails, and held until the toolkit has connected: a server
    // may start over when its only client leaves.
    XcbConnection connection;
    if (chosen.isEmpty() || chosen.startsWith("xcb")) {
        connection.reset(xcb_connect(nullptr, nullptr));
        if (xcb_connection_has_error(connection.get()) != 0) {
            log.write("Marrowick: there is no display that can be reached");
            std::exit(EXIT_FAILURE);
        }
    }
    if (chosen.isEmpty())
        qputenv(platformVariable, "xcb");
    auto application = std::make_unique<QApplication>(argc, argv);
    // The choice is this program's alone, and the programs that it starts inherit the environment.
    if (chosen.isEmpty())
        qunsetenv(platformVariable);
    return application;
}

void nameApplication()
{
    auto const name = QString::fromLatin1(identifier);
    QGuiApplication::setDesktopFileName(name);
    QCoreApplication::setOrganizationDomain(QStringLiteral("marrowick.org"));
    // The class of all windows is the application's name at the making of the first window. Status areas and screen
    // readers show the name, which is to be the readable one.
    QCoreApplication::setApplicationName(name);
    QWindow().create();
    QCoreApplication::setApplicationName(QStringLiteral("Marrowick"));
}

}

QuitWatch::QuitWatch(std::function<void()> quits)
    : quits_(std::move(quits))
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool QuitWatch::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Quit && watched == QCoreApplication::instance())
        quits_();
    return false;
}

FreedesktopApplication::FreedesktopApplication(
    int& argc, char** argv, FreedesktopEvents& events, std::shared_ptr<DeliveryGate> gate, Log& log)
    : events_(events)
    , gate_(std::move(gate))
    , log_(log)
    , startupData_(takeStartupData())
    , application_(makeApplication(argc, argv, log))
    , quitSignals_([this] { terminate(); })
    , quitWatch_([this] { isTerminated_ = true; })
{
    nameApplication();
    QApplication::setQuitOnLastWindowClosed(false);
    QCoreApplication::setQuitLockEnabled(false);
    new ApplicationInterface(object_, [this] { askForReopen(); });
}

FreedesktopApplication::~FreedesktopApplication()
{
    QDBusConnection::sessionBus().unregisterService(QLatin1String(identifier));
}

std::optional<std::string> FreedesktopApplication::bundleIdentifier() const
{
    return identifier;
}

bool FreedesktopApplication::claimSingleInstance()
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        log_.write("Marrowick: there is no session bus; settings cannot be stored, and a second start is not noticed");
        return true;
    }
    // Before the name, since whoever sees the name may call.
    bus.registerObject(QLatin1String(objectPath), &object_, QDBusConnection::ExportAdaptors);
    constexpr int attempts = 3;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        auto const claim = bus.interface()->registerService(QLatin1String(identifier),
            QDBusConnectionInterface::DontQueueService, QDBusConnectionInterface::DontAllowReplacement);
        if (!claim.isValid()) {
            log_.write("Marrowick: the session bus refuses the name " + std::string(identifier));
            return true;
        }
        if (claim.value() == QDBusConnectionInterface::ServiceRegistered)
            return true;
        auto activate = QDBusMessage::createMethodCall(QLatin1String(identifier), QLatin1String(objectPath),
            QStringLiteral("org.freedesktop.Application"), QStringLiteral("Activate"));
        activate << startupData_;
        activate.setAutoStartService(false);
        auto const answer = bus.call(activate, QDBus::Block, static_cast<int>(patienceWithOtherInstance.count()));
        if (answer.type() != QDBusMessage::ErrorMessage)
            return false;
        // The other one may have ended in between; then the name is free.
        if (!bus.interface()->isServiceRegistered(QLatin1String(identifier)))
            continue;
        log_.write("Marrowick: the program runs already but does not answer");
        return false;
    }
    log_.write("Marrowick: the program runs already but does not answer");
    return false;
}

void FreedesktopApplication::setReopenHandler(std::function<void()> handler)
{
    reopenHandler_ = std::move(handler);
    if (isAskedToReopen_)
        askForReopen();
}

void FreedesktopApplication::askForReopen()
{
    isAskedToReopen_ = true;
    // Later, so that the asking program gets its answer before a menu is filled.
    QMetaObject::invokeMethod(
        &object_, [this] { reopenIfAsked(); }, Qt::QueuedConnection);
}

void FreedesktopApplication::reopenIfAsked()
{
    if (!isAskedToReopen_ || !hasLaunched_ || !reopenHandler_)
        return;
    isAskedToReopen_ = false;
    if (gate_->turnsUserAway())
        return;
    FreedesktopEvents::Scope const scope(events_, Event { EventType::leftMouseUp, {} });
    auto const handler = reopenHandler_;
    handler();
}

void FreedesktopApplication::setAccessoryActivationPolicy()
{
    // Taskbars list windows, not programs: each window of the program says for itself whether it wants an entry.
}

void FreedesktopApplication::activate()
{
    for (auto* const window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowType() != Qt::Popup && window->windowType() != Qt::ToolTip)
            window->raise();
    }
}

void FreedesktopApplication::run(std::function<void()> didFinishLaunching)
{
    if (isTerminated_)
        return;
    auto launch = [this, didFinishLaunching = std::move(didFinishLaunching)] {
        didFinishLaunching();
        hasLaunched_ = true;
        reopenIfAsked();
    };
    QMetaObject::invokeMethod(&object_, std::move(launch), Qt::QueuedConnection);
    QApplication::exec();
}

void FreedesktopApplication::terminate()
{
    isTerminated_ = true;
    QCoreApplication::exit(EXIT_SUCCESS);
}

}
