#include "Shared/MenuRefresh.h"

#include "Shared/GLib.h"

namespace marrowick::companion {

MenuRefresh::MenuRefresh(std::string const& folder, Signal signal)
    : signal_(signal)
{
    ObjectOwner<GFile> const file(g_file_new_for_path((folder + "/menu-snapshot.json").c_str()));
    GError* error = nullptr;
    monitor_ = g_file_monitor_file(file.get(), G_FILE_MONITOR_WATCH_MOVES, nullptr, &error);
    if (monitor_) {
        g_signal_connect(monitor_, "changed", G_CALLBACK(changed), this);
        return;
    }
    g_message("Marrowick: menus are renewed only with the selection: %s", error->message);
    g_error_free(error);
}

MenuRefresh::~MenuRefresh()
{
    if (monitor_) {
        g_signal_handlers_disconnect_by_data(monitor_, this);
        g_file_monitor_cancel(monitor_);
        g_object_unref(monitor_);
    }
    g_set_weak_pointer(&provider_, nullptr);
}

void MenuRefresh::wasAsked(void* provider)
{
    g_set_weak_pointer(&provider_, G_OBJECT(provider));
}

void MenuRefresh::changed(GFileMonitor*, GFile*, GFile*, GFileMonitorEvent event, void* self)
{
    auto const& refresh = *static_cast<MenuRefresh*>(self);
    // More is to be written; the end of it is told as well.
    if (event != G_FILE_MONITOR_EVENT_CHANGED && refresh.provider_)
        refresh.signal_(refresh.provider_);
}

}
