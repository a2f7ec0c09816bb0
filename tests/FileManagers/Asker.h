#pragma once

#include <gio/gio.h>

#include <functional>
#include <optional>
#include <string>

namespace marrowick::companion {

/// Serves the main loop until `condition` holds; false when it does not in time.
bool waitFor(std::function<bool()> const& condition);

/// Another program on the session bus, with a connection of its own. While it waits the main loop is served.
class Asker {
public:
    Asker();
    ~Asker();
    Asker(Asker const&) = delete;
    Asker& operator=(Asker const&) = delete;

    bool isOwned(std::string const& name);
    void takeName(std::string const& name);

    /// What the companion with the name answers.
    std::string state(std::string const& name);

    /// The printed answer, or the name of the error.
    std::string ask(std::string const& name, char const* path, char const* interface, char const* method,
        GVariant* arguments = nullptr);

private:
    static void answered(GObject* connection, GAsyncResult* result, void* self);
    std::string askBus(char const* method, GVariant* arguments);

    GDBusConnection* connection_;
    std::optional<std::string> answer_;
};

}
