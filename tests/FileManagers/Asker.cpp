#include "FileManagers/Asker.h"

#include <chrono>
#include <cstdlib>

namespace marrowick::companion {

bool waitFor(std::function<bool()> const& condition)
{
    auto const deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        g_main_context_iteration(nullptr, FALSE);
    }
    return true;
}

Asker::Asker()
    : connection_(g_dbus_connection_new_for_address_sync(std::getenv("DBUS_SESSION_BUS_ADDRESS"),
        static_cast<GDBusConnectionFlags>(
            G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr))
{
    if (!connection_)
        std::abort();
}

Asker::~Asker()
{
    g_dbus_connection_close_sync(connection_, nullptr, nullptr);
    g_object_unref(connection_);
}

bool Asker::isOwned(std::string const& name)
{
    return askBus("NameHasOwner", g_variant_new("(s)", name.c_str())) == "(true,)";
}

void Asker::takeName(std::string const& name)
{
    constexpr guint32 doNotQueue = 4;
    askBus("RequestName", g_variant_new("(su)", name.c_str(), doNotQueue));
}

std::string Asker::state(std::string const& name)
{
    return ask(name, "/org/marrowick/FileManager", "org.marrowick.FileManager", "GetState");
}

std::string Asker::ask(
    std::string const& name, char const* path, char const* interface, char const* method, GVariant* arguments)
{
    answer_.reset();
    g_dbus_connection_call(connection_, name.c_str(), path, interface, method, arguments, nullptr,
        G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, answered, this);
    return waitFor([&] { return answer_.has_value(); }) ? *answer_ : "no answer";
}

std::string Asker::askBus(char const* method, GVariant* arguments)
{
    return ask("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, arguments);
}

void Asker::answered(GObject* connection, GAsyncResult* result, void* self)
{
    GError* error = nullptr;
    auto* answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &error);
    char* const printed = answer ? g_variant_print(answer, FALSE) : g_dbus_error_get_remote_error(error);
    static_cast<Asker*>(self)->answer_ = printed ? printed : "an error of no name";
    g_free(printed);
    g_clear_pointer(&answer, g_variant_unref);
    g_clear_error(&error);
}

}
