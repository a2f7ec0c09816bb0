#include "Freedesktop/Session/SessionBus.h"

#include <sys/stat.h>

#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

namespace marrowick {

namespace {

/// A call on its way, and what follows it.
struct PendingCall {
    BusCall call;
    GVariantOwner arguments;
    GObjectOwner<GCancellable> cancellable;
    SessionBus::Done done;

    void finish(GVariant* answer, GError const* error) const
    {
        if (!g_cancellable_is_cancelled(cancellable.get()))
            done(answer, error);
    }
};

void answered(GObject* connection, GAsyncResult* result, void* data)
{
    std::unique_ptr<PendingCall> const pending(static_cast<PendingCall*>(data));
    GError* error = nullptr;
    GVariantOwner const answer(g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &error));
    GErrorOwner const ownedError(error);
    pending->finish(answer.get(), error);
}

void connected(GObject*, GAsyncResult* result, void* data)
{
    std::unique_ptr<PendingCall> pending(static_cast<PendingCall*>(data));
    GError* error = nullptr;
    GObjectOwner<GDBusConnection> const connection(g_bus_get_finish(result, &error));
    GErrorOwner const ownedError(error);
    if (!connection) {
        pending->finish(nullptr, error);
        return;
    }
    g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
    auto const& call = pending->call;
    auto* const cancellable = pending->cancellable.get();
    auto* const arguments = pending->arguments.get();
    g_dbus_connection_call(connection.get(), call.destination.c_str(), call.path.c_str(), call.interface.c_str(),
        call.method.c_str(), arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, call.timeoutMilliseconds, cancellable,
        answered, pending.release());
}

}

SessionBus::SessionBus()
    : cancellable_(g_cancellable_new())
{
}

SessionBus::~SessionBus()
{
    g_cancellable_cancel(cancellable_.get());
}

bool SessionBus::isAvailable()
{
    char const* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (address && *address)
        return !std::string_view(address).starts_with("autolaunch:");
    char const* const runtimeDirectory = std::getenv("XDG_RUNTIME_DIR");
    struct stat status { };
    return runtimeDirectory && stat((std::string(runtimeDirectory) + "/bus").c_str(), &status) == 0
        && S_ISSOCK(status.st_mode);
}

void SessionBus::call(BusCall call, Done done)
{
    auto pending = std::make_unique<PendingCall>();
    if (auto* const arguments = std::exchange(call.arguments, nullptr))
        pending->arguments.reset(g_variant_take_ref(arguments));
    pending->call = std::move(call);
    pending->cancellable.reset(G_CANCELLABLE(g_object_ref(cancellable_.get())));
    pending->done = std::move(done);
    auto* const cancellable = pending->cancellable.get();
    g_bus_get(G_BUS_TYPE_SESSION, cancellable, connected, pending.release());
}

}
