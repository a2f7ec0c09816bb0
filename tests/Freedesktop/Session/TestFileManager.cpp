#include "Freedesktop/Session/TestFileManager.h"

#include <cstdlib>
#include <utility>

namespace marrowick {

namespace {

GDBusConnection* connectToBus()
{
    char const* const address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    auto const flags = static_cast<GDBusConnectionFlags>(
        G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    auto* const connection = g_dbus_connection_new_for_address_sync(address, flags, nullptr, nullptr, nullptr);
    if (!connection)
        std::abort();
    return connection;
}

void callBusOn(GDBusConnection* connection, char const* method, GVariant* arguments)
{
    auto* const answer = g_dbus_connection_call_sync(connection, "org.freedesktop.DBus", "/org/freedesktop/DBus",
        "org.freedesktop.DBus", method, arguments, nullptr, G_DBUS_CALL_FLAGS_NONE, 10'000, nullptr, nullptr);
    if (!answer)
        std::abort();
    g_variant_unref(answer);
}

std::vector<std::string> textsOf(GVariant* list)
{
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < g_variant_n_children(list); ++i) {
        auto* const item = g_variant_get_child_value(list, i);
        texts.emplace_back(g_variant_get_string(item, nullptr));
        g_variant_unref(item);
    }
    return texts;
}

}

void callBus(char const* method, GVariant* arguments)
{
    auto* const connection = connectToBus();
    callBusOn(connection, method, arguments);
    g_object_unref(connection);
}

TestFileManager::TestFileManager(Behaviour behaviour, std::string const& name)
    : behaviour_(behaviour)
    , connection_(connectToBus())
{
    // A filter runs on the thread that reads the connection, so the calls are seen while the test waits elsewhere.
    g_dbus_connection_add_filter(connection_, filter, this, nullptr);
    takeName(name);
}

TestFileManager::~TestFileManager()
{
    g_dbus_connection_close_sync(connection_, nullptr, nullptr);
    g_object_unref(connection_);
}

std::vector<RecordedCall> TestFileManager::calls()
{
    std::lock_guard const lock(mutex_);
    return calls_;
}

void TestFileManager::takeName(std::string const& name)
{
    callBusOn(connection_, "RequestName", g_variant_new("(su)", name.c_str(), 4U));
}

std::string TestFileManager::connectionName() const
{
    return g_dbus_connection_get_unique_name(connection_);
}

void TestFileManager::exportWindows(std::string const& printedValue)
{
    std::lock_guard const lock(mutex_);
    exportedWindows_ = printedValue;
}

GDBusMessage* TestFileManager::filter(GDBusConnection* connection, GDBusMessage* message, gboolean incoming, void* self)
{
    if (!incoming || g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL)
        return message;
    static_cast<TestFileManager*>(self)->handle(connection, message);
    g_object_unref(message);
    return nullptr;
}

void TestFileManager::handle(GDBusConnection* connection, GDBusMessage* message)
{
    RecordedCall call;
    call.method = g_dbus_message_get_member(message);
    auto* const body = g_dbus_message_get_body(message);
    if (body && g_variant_is_of_type(body, G_VARIANT_TYPE("(ass)"))) {
        auto* const uris = g_variant_get_child_value(body, 0);
        call.uris = textsOf(uris);
        g_variant_unref(uris);
        char* startupID = nullptr;
        g_variant_get_child(body, 1, "s", &startupID);
        call.startupID = startupID;
        g_free(startupID);
    } else if (body) {
        char* const printed = g_variant_print(body, FALSE);
        call.uris = { g_dbus_message_get_path(message), printed };
        g_free(printed);
    }
    std::string exported;
    {
        std::lock_guard const lock(mutex_);
        if (call.method == "Get")
            exported = exportedWindows_;
        calls_.push_back(std::move(call));
    }
    if (behaviour_ == Behaviour::keepsSilent)
        return;
    auto* const answer = behaviour_ == Behaviour::answers
        ? g_dbus_message_new_method_reply(message)
        : g_dbus_message_new_method_error_literal(message, "org.freedesktop.DBus.Error.UnknownMethod", "No");
    if (!exported.empty())
        g_dbus_message_set_body(answer, g_variant_new_parsed(("(<" + exported + ">,)").c_str()));
    g_dbus_connection_send_message(connection, answer, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
    g_object_unref(answer);
}

}
