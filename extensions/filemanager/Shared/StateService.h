#pragma once

#include "Shared/WindowState.h"

#include <gio/gio.h>

#include <functional>
#include <string>
#include <vector>

namespace marrowick::companion {

/// Answers on the session bus what the file manager's windows show. Without a bus it does nothing. Main thread only.
class StateService {
public:
    using Question = std::function<std::vector<WindowState>()>;

    /// Takes the bus name of this file manager; where another process of it has the name already, one with the process's
    /// number behind it. `question` is asked anew each time.
    StateService(std::string fileManager, Question question);
    ~StateService();
    StateService(StateService const&) = delete;
    StateService& operator=(StateService const&) = delete;

private:
    /// Whom the bus is asked for; null once that has ended.
    struct Asker {
        StateService* service;
    };

    static void busAcquired(GObject* source, GAsyncResult* result, void* asker);
    static void nameLost(GDBusConnection* connection, char const* name, void* self);
    static void methodCalled(GDBusConnection* connection, char const* sender, char const* path, char const* interface,
        char const* method, GVariant* arguments, GDBusMethodInvocation* invocation, void* self);

    void serve(GDBusConnection* connection);
    void own(std::string const& name);

    std::string fileManager_;
    Question question_;
    /// Null when the bus has answered.
    Asker* asker_;
    GDBusConnection* connection_ = nullptr;
    guint registration_ = 0;
    /// What GLib calls the names that were asked for.
    std::vector<guint> names_;
};

}
