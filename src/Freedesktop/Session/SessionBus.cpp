#include "Freedesktop/Session/SessionBus.h"

#include <sys/stat.h>

#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace marrowick {

namespace {

/// While it lives, what is begun is answered from a context other than the program's event loop.
class AnsweredFrom {
public:
    explicit AnsweredFrom(GMainContext* context)
        : context_(context)
    {
        if (context_)
            g_main_context_push_thread_default(context_);
    }
    ~AnsweredFrom()
    {
        if (context_)
            g_main_context_pop_thread_default(context_);
    }
    AnsweredFrom(AnsweredFrom const&) = delete;
    AnsweredFrom& operator=(AnsweredFrom const&) = delete;

private:
    GMainContext* context_;
};

}

/// A call on its way, and what follows it.
struct SessionBus::PendingCall {
    std::shared_ptr<State> state;
    BusCall call;
    GVariantOwner arguments;
    Done done;

    void finish(GVariant* answer, GError const* error) const;

    static void connected(GObject*, GAsyncResult* result, void* data);
    static void send(std::unique_ptr<PendingCall> pending);
    static void answered(GObject* connection, GAsyncResult* result, void* data);
};

struct SessionBus::State {
    GMainContext* context = nullptr;
    GObjectOwner<GCancellable> cancellable { g_cancellable_new() };
    /// Kept from the first call on: asking for it anew each time could change the order of calls.
    GObjectOwner<GDBusConnection> connection;
    /// The calls that wait for the connection.
    std::vector<std::unique_ptr<PendingCall>> waiting;
    bool hasEnded = false;
};

void SessionBus::PendingCall::finish(GVariant* answer, GError const* error) const
{
    if (!state->hasEnded)
        done(answer, error);
}

SessionBus::SessionBus(GMainContext* context)
    : state_(std::make_shared<State>())
{
    state_->context = context;
}

SessionBus::~SessionBus()
{
    state_->hasEnded = true;
    state_->waiting.clear();
    g_cancellable_cancel(state_->cancellable.get());
    // What was cancelled holds the state until its end is delivered, which nobody else does in a context of its own.
    while (state_->context && state_.use_count() > 1)
        g_main_context_iteration(state_->context, TRUE);
}

void SessionBus::PendingCall::connected(GObject*, GAsyncResult* result, void* data)
{
    std::unique_ptr<std::shared_ptr<State>> const state(static_cast<std::shared_ptr<State>*>(data));
    GError* error = nullptr;
    GObjectOwner<GDBusConnection> connection(g_bus_get_finish(result, &error));
    GErrorOwner const ownedError(error);
    auto waiting = std::exchange((*state)->waiting, {});
    if (connection) {
        g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
        (*state)->connection = std::move(connection);
    }
    for (auto& pending : waiting) {
        if ((*state)->connection)
            send(std::move(pending));
        else
            pending->finish(nullptr, error);
    }
}

void SessionBus::PendingCall::send(std::unique_ptr<PendingCall> pending)
{
    auto const& call = pending->call;
    auto* const connection = pending->state->connection.get();
    auto* const cancellable = pending->state->cancellable.get();
    auto* const arguments = pending->arguments.get();
    AnsweredFrom const scope(pending->state->context);
    g_dbus_connection_call(connection, call.destination.c_str(), call.path.c_str(), call.interface.c_str(),
        call.method.c_str(), arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, call.timeoutMilliseconds, cancellable,
        answered, pending.release());
}

void SessionBus::PendingCall::answered(GObject* connection, GAsyncResult* result, void* data)
{
    std::unique_ptr<PendingCall> const pending(static_cast<PendingCall*>(data));
    GError* error = nullptr;
    GVariantOwner const answer(g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &error));
    GErrorOwner const ownedError(error);
    pending->finish(answer.get(), error);
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
    pending->state = state_;
    if (auto* const arguments = std::exchange(call.arguments, nullptr))
        pending->arguments.reset(g_variant_take_ref(arguments));
    pending->call = std::move(call);
    pending->done = std::move(done);
    auto& connection = state_->connection;
    if (connection && g_dbus_connection_is_closed(connection.get()))
        connection.reset();
    if (connection) {
        PendingCall::send(std::move(pending));
        return;
    }
    state_->waiting.push_back(std::move(pending));
    if (state_->waiting.size() > 1)
        return;
    AnsweredFrom const scope(state_->context);
    g_bus_get(
        G_BUS_TYPE_SESSION, state_->cancellable.get(), PendingCall::connected, new std::shared_ptr<State>(state_));
}

}
