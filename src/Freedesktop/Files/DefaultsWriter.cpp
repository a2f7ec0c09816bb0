#include "Freedesktop/Files/DefaultsWriter.h"

#include <condition_variable>
#include <dconf.h>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace marrowick {

struct DefaultsWriter::Shared {
    struct Change {
        std::string path;
        VariantPointer value;
    };

    ObjectPointer<DConfClient> client;
    std::mutex mutex;
    std::condition_variable changed;
    /// The first one is being written; it stays until that is done, so that it is found as pending.
    std::deque<Change> changes;
    std::optional<std::string> failure;
    /// The service let a caller's patience pass and has not answered since.
    bool isStuck = false;
    bool isClosing = false;
};

DefaultsWriter::DefaultsWriter(ObjectPointer<DConfClient> client)
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

std::optional<std::string> DefaultsWriter::write(std::string const& path, VariantPointer value)
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

VariantPointer DefaultsWriter::pendingValue(std::string const& path) const
{
    std::lock_guard const lock(shared_->mutex);
    for (auto change = shared_->changes.rbegin(); change != shared_->changes.rend(); ++change) {
        if (change->path == path)
            return VariantPointer(g_variant_ref(change->value.get()));
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
        GError* error = nullptr;
        bool const isWritten
            = dconf_client_write_sync(shared->client.get(), path.c_str(), value, nullptr, nullptr, &error) != FALSE;
        ErrorPointer const ownedError(error);
        lock.lock();

        if (!isWritten)
            shared->failure = error ? error->message : "no reason given";
        shared->isStuck = false;
        shared->changes.pop_front();
        shared->changed.notify_all();
    }
}

}
