#include "FileManagerProgram/Companion.h"

#include <cstdlib>
#include <iostream>
#include <string_view>
#include <utility>

namespace {

struct Arrival {
    Companion* companion;
    GDBusMessage* question;
};

bool asksForTheState(GDBusMessage* message)
{
    return g_dbus_message_get_message_type(message) == G_DBUS_MESSAGE_TYPE_METHOD_CALL
        && std::string_view(g_dbus_message_get_member(message)) == "GetState"
        && std::string_view(g_dbus_message_get_path(message)) == "/org/marrowick/FileManager"
        && g_strcmp0(g_dbus_message_get_interface(message), "org.marrowick.FileManager") == 0;
}

[[noreturn]] void giveUp(std::string const& why)
{
    std::cerr << "test-file-manager: " << why << '\n';
    std::exit(1);
}

}

Companion::Companion(std::vector<std::string> const& names)
    : connection_(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr))
{
    if (!connection_)
        giveUp("no session bus");
    answer("@(a(tsassb)) ([],)");
    // A registered object would have to answer with the type that it declares.
    g_dbus_connection_add_filter(connection_, filter, this, nullptr);
    for (auto const& name : names) {
        constexpr guint32 doNotQueue = 4;
        auto* const outcome = g_dbus_connection_call_sync(connection_, "org.freedesktop.DBus", "/org/freedesktop/DBus",
            "org.freedesktop.DBus", "RequestName", g_variant_new("(su)", name.c_str(), doNotQueue),
            G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
        guint32 result = 0;
        if (outcome)
            g_variant_get(outcome, "(u)", &result);
        if (result != 1)
            giveUp("the name is taken: " + name);
        g_variant_unref(outcome);
    }
}

Companion::~Companion()
{
    g_dbus_connection_close_sync(connection_, nullptr, nullptr);
    g_object_unref(connection_);
    if (value_)
        g_variant_unref(value_);
    for (auto* const question : kept_)
        g_object_unref(question);
}

bool Companion::answer(std::string const& printedValue)
{
    auto* const value = g_variant_parse(nullptr, printedValue.c_str(), nullptr, nullptr, nullptr);
    if (!value || !g_variant_is_of_type(value, G_VARIANT_TYPE_TUPLE))
        return false;
    if (value_)
        g_variant_unref(value_);
    value_ = value;
    failure_.clear();
    isSilent_ = false;
    return true;
}

void Companion::fail(std::string const& message)
{
    failure_ = message;
    isSilent_ = false;
}

void Companion::keepSilent()
{
    isSilent_ = true;
}

void Companion::release()
{
    isSilent_ = false;
    for (auto* const question : std::exchange(kept_, {}))
        reply(question);
}

GDBusMessage* Companion::filter(GDBusConnection*, GDBusMessage* message, gboolean incoming, void* self)
{
    if (!incoming || !asksForTheState(message))
        return message;
    // This is the thread that reads the connection.
    g_idle_add_full(
        G_PRIORITY_DEFAULT, takeFromFilter, new Arrival { static_cast<Companion*>(self), message }, nullptr);
    return nullptr;
}

gboolean Companion::takeFromFilter(void* data)
{
    auto* const arrival = static_cast<Arrival*>(data);
    arrival->companion->handle(arrival->question);
    delete arrival;
    return G_SOURCE_REMOVE;
}

void Companion::handle(GDBusMessage* question)
{
    ++count_;
    if (isSilent_) {
        kept_.push_back(question);
        return;
    }
    if (delay_ == 0) {
        reply(question);
        return;
    }
    auto const replyLater = [](void* data) -> gboolean {
        auto* const arrival = static_cast<Arrival*>(data);
        arrival->companion->reply(arrival->question);
        delete arrival;
        return G_SOURCE_REMOVE;
    };
    g_timeout_add(delay_, replyLater, new Arrival { this, question });
}

void Companion::reply(GDBusMessage* question)
{
    GDBusMessage* answer = nullptr;
    if (failure_.empty()) {
        answer = g_dbus_message_new_method_reply(question);
        g_dbus_message_set_body(answer, value_);
    } else {
        answer = g_dbus_message_new_method_error_literal(question, "org.marrowick.Test.Failed", failure_.c_str());
    }
    g_dbus_connection_send_message(connection_, answer, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
    g_object_unref(answer);
    g_object_unref(question);
}
