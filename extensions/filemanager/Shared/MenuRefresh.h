#pragma once

#include <gio/gio.h>

#include <string>

namespace marrowick::companion {

/// Has a file manager ask for its menus anew when something else is published: some ask only when the selection changes,
/// and would offer the old destinations until then. Main thread only.
class MenuRefresh {
public:
    /// Says on behalf of a provider that its menus are out of date.
    using Signal = void (*)(void* provider);

    /// `folder` is where the two programs exchange files.
    MenuRefresh(std::string const& folder, Signal signal);
    ~MenuRefresh();
    MenuRefresh(MenuRefresh const&) = delete;
    MenuRefresh& operator=(MenuRefresh const&) = delete;

    /// `provider` was asked for a menu. Before that there is none that could be out of date.
    void wasAsked(void* provider);

private:
    static void changed(GFileMonitor* monitor, GFile* file, GFile* other, GFileMonitorEvent event, void* self);

    Signal signal_;
    GFileMonitor* monitor_ = nullptr;
    GObject* provider_ = nullptr;
};

}
