#include "Freedesktop/Files/DefaultsWriter.h"

#include <condition_variable>
#include <dconf.h>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace marrowick {

namespace {

/// Keeps the process when the session bus goes away, which by itself ends it. To be called once the settings library has
/// its connection: the one that is asked for here is the same then. The library has to make it on its own thread, or it
/// does not learn that it is closed and never takes another.
void survivePartingOfBus()
{
    GObjectOwner<GDBusConnection> const connection(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (connection)
        g_dbus_connection_set_exit_on_close(connection.get(), FALSE);
}

/// Writes and waits. Absent when it is done, else the reason why not.
std::optional<std::string> writeNow(DConfClient* client, std::string const& path, GVariant* value)
{
    GError* error = nullptr;
    bool const isWritten = dconf_client_write_sync(client, path.c_str(), value, nullptr, nullptr, &error) != FALSE;
    GErrorOwner const ownedError(error);
    if (isWritten || (error && g_dbus_error_is_remote_error(error)))
        survivePartingOfBus();
    if (isWritten)
        return std::nullopt;
    if (!error)
        return "no reason given";
    g_dbus_error_strip_remote_error(error);
    return error->message;
}

}

struct DefaultsWriter::Shared {
    struct Change {
        std::string path;
        GVariantOwner value;
    };

    GObjectOwner<DConfClient> client;
    std::mutex mutex;
    std::condition_variable changed;
    /// The first one is being written; it stays until that is done, so that it is found as pending.
    std::deque<Change> changes;
    std::optional<std::string> failure;
    /// The service let a caller's patience pass and has not answered since.
    bool isStuck = false;
    bool isClosing = false;
};

DefaultsWriter::DefaultsWriter(GObjectOwner<DConfClient> client)
    : shared_(std::make_shared<Shared>())
{
    shared_->client = std::move(client);
}

DefaultsWriter::~DefaultsWriter()
{
    std::unique_lock lock(shared_->mutex);
    if (!shared_->isStuck)
        shared_->changed.wait_for(lock, patience, [&] { return shared_->changes.empty(); });
    shared_->isClosing = true;
    shared_->changed.notify_all();
}

std::optional<std::string> DefaultsWriter::write(std::string const& path, GVariantOwner value)
{
    std::unique_lock lock(shared_->mutex);
    if (!isRunning_) {
        try {
            std::thread([shared = shared_] { run(shared); }).detach();
        } catch (std::system_error const& error) {
            return error.what();
        }
        isRunning_ = true;
    }
    shared_->changes.push_back({ path, std::move(value) });
    shared_->changed.notify_all();
    if (!shared_->isStuck) {
        auto const isDone = shared_->changed.wait_for(lock, patience, [&] { return shared_->changes.empty(); });
        if (!isDone) {
            shared_->isStuck = true;
            return "the settings service does not answer";
        }
    }
    return std::exchange(shared_->failure, std::nullopt);
}

GVariantOwner DefaultsWriter::pendingValue(std::string const& path) const
{
    std::lock_guard const lock(shared_->mutex);
    for (auto change = shared_->changes.rbegin(); change != shared_->changes.rend(); ++change) {
        if (change->path == path)
            return GVariantOwner(g_variant_ref(change->value.get()));
    }
    return nullptr;
}

void DefaultsWriter::run(std::shared_ptr<Shared> const& shared)
{
    std::unique_lock lock(shared->mutex);
    for (;;) {
        shared->changed.wait(lock, [&] { return shared->isClosing || !shared->changes.empty(); });
        if (shared->changes.empty())
            return;
        auto const path = shared->changes.front().path;
        auto* const value = shared->changes.front().value.get();

        lock.unlock();
        auto failure = writeNow(shared->client.get(), path, value);
        lock.lock();

        if (failure)
            shared->failure = std::move(failure);
        shared->isStuck = false;
        shared->changes.pop_front();
        shared->changed.notify_all();
    }
}

}
