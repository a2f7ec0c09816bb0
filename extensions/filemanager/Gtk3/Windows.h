#pragma once

#include "Shared/WindowState.h"

#include <gtk/gtk.h>

#include <functional>
#include <vector>

namespace marrowick::companion {

/// The names that a file manager has for its parts.
struct WindowNames {
    /// As people know it.
    char const* fileManager;
    /// The types of its windows, and of what shows a folder in them; the latter is needed for `activeView` alone.
    char const* windowType;
    char const* viewType = "";
};

/// The windows of this process, as GTK 3 knows them. Remembers which had the keyboard last. Main thread only.
class Windows {
public:
    explicit Windows(WindowNames const& names);
    ~Windows();
    Windows(Windows const&) = delete;
    Windows& operator=(Windows const&) = delete;

    /// What is told of each window, those that `fill` says no to left out. `fill` adds folder and selection.
    std::vector<WindowState> states(std::function<bool(GtkWidget*, WindowState&)> const& fill) const;

    /// What shows a folder in `window`; of several side by side, the one that had the keyboard last. Null where there is
    /// none.
    GtkWidget* activeView(GtkWidget* window) const;

private:
    static gboolean focusCame(GSignalInvocationHint* hint, guint count, GValue const* values, void* self);

    WindowNames names_;
    unsigned int signal_;
    unsigned long hook_;
    GtkWindow* lastActive_ = nullptr;
    std::size_t timesFocused_ = 0;
};

/// All widgets below `top` that are on the screen and of the type `typeName`, or of one derived from it.
std::vector<GtkWidget*> mappedDescendants(GtkWidget* top, char const* typeName);

/// The first of these; null where there is none.
GtkWidget* mappedDescendant(GtkWidget* top, char const* typeName);

/// Whether `object` has a property `name` that can be read as `type`.
bool hasProperty(void* object, char const* name, GType type);

}
