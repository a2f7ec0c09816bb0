#include "Shared/StateService.h"

#include "Shared/GLib.h"
#include "Shared/Guarded.h"

#include <unistd.h>

#include <memory>
#include <utility>

namespace marrowick::companion {

namespace {

std::string const namePrefix = "org.marrowick.FileManager.";
constexpr char const* objectPath = "/org/marrowick/FileManager";
constexpr char const* description = R"xml(
<node>
  <interface name="org.marrowick.FileManager">
    <method name="GetState"><arg type="a(tsassb)" direction="out"/></method>
  </interface>
</node>)xml";

/// What a bus message may hold as text: a title may be any bytes.
std::string validText(std::string const& text)
{
    return taken(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())));
}

GVariant* answerOf(std::vector<WindowState> const& windows)
{
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE("a(tsassb)"));
    for (auto const& window : windows) {
        GVariantBuilder selected;
        g_variant_builder_init(&selected, G_VARIANT_TYPE("as"));
        for (auto const& uri : window.selectedURIs)
            g_variant_builder_add(&selected, "s", validText(uri).c_str());
        g_variant_builder_add(&list, "(tsassb)", window.window, validText(window.folderURI).c_str(), &selected,
            validText(window.title).c_str(), static_cast<gboolean>(window.isActive));
    }
    return g_variant_new("(a(tsassb))", &list);
}

}

StateService::StateService(std::string fileManager, Question question)
    : fileManager_(std::move(fileManager))
    , question_(std::move(question))
    , asker_(new Asker { this })
{
    // The file manager starts up meanwhile. The question is never cancelled: the connection is the whole process's, and
    // one that was cancelled while it was made fails for all who wait for it.
    g_bus_get(G_BUS_TYPE_SESSION, nullptr, busAcquired, asker_);
}

StateService::~StateService()
{
    if (asker_)
        asker_->service = nullptr;
    for (auto const name : names_)
        g_bus_unown_name(name);
    if (registration_ != 0)
        g_dbus_connection_unregister_object(connection_, registration_);
    g_clear_object(&connection_);
}

void StateService::busAcquired(GObject*, GAsyncResult* result, void* asker)
{
    std::unique_ptr<Asker> const asked(static_cast<Asker*>(asker));
    GError* error = nullptr;
    auto* const connection = g_bus_get_finish(result, &error);
    if (auto* const service = asked->service) {
        service->asker_ = nullptr;
        if (connection)
            guarded([&] { service->serve(connection); });
        else
            g_message("Marrowick: no session bus: %s", error->message);
    } else if (connection) {
        g_object_unref(connection);
    }
    g_clear_error(&error);
}

void StateService::serve(GDBusConnection* connection)
{
    connection_ = connection;
    auto* const node = g_dbus_node_info_new_for_xml(description, nullptr);
    GDBusInterfaceVTable const table { methodCalled, nullptr, nullptr, {} };
    registration_ = g_dbus_connection_register_object(
        connection_, objectPath, node->interfaces[0], &table, this, nullptr, nullptr);
    g_dbus_node_info_unref(node);
    if (registration_ != 0)
        own(namePrefix + fileManager_);
}

void StateService::own(std::string const& name)
{
    names_.push_back(g_bus_own_name_on_connection(
        connection_, name.c_str(), G_BUS_NAME_OWNER_FLAGS_DO_NOT_QUEUE, nullptr, nameLost, this, nullptr));
}

void StateService::nameLost(GDBusConnection* connection, char const*, void* self)
{
    auto& service = *static_cast<StateService*>(self);
    // The first one cannot be given back while GLib tells that it is lost.
    if (!connection || service.names_.size() > 1)
        return;
    guarded([&] { service.own(namePrefix + service.fileManager_ + ".p" + std::to_string(getpid())); });
}

void StateService::methodCalled(GDBusConnection*, char const*, char const*, char const*, char const*, GVariant*,
    GDBusMethodInvocation* invocation, void* self)
{
    auto* const answer = guarded(
        static_cast<GVariant*>(nullptr), [&] { return answerOf(static_cast<StateService*>(self)->question_()); });
    if (answer)
        g_dbus_method_invocation_return_value(invocation, answer);
    else
        g_dbus_method_invocation_return_error_literal(
            invocation, G_DBUS_ERROR, G_DBUS_ERROR_FAILED, "The windows cannot be read.");
}

}
