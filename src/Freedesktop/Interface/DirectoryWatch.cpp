#include "Freedesktop/Interface/DirectoryWatch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <utility>

namespace marrowick {

namespace {

constexpr std::uint32_t entryEvents = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;
constexpr std::uint32_t endEvents = IN_DELETE_SELF | IN_MOVE_SELF;
/// The kernel sends these without being asked. Events that were lost stand for any.
constexpr std::uint32_t changes = entryEvents | IN_Q_OVERFLOW;
constexpr std::uint32_t ends = endEvents | IN_UNMOUNT | IN_IGNORED;

}

std::shared_ptr<DirectoryWatch> DirectoryWatch::make(Target target, FileURL const& url, Handler changed, Handler ended)
{
    FileDescriptor queue(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (!queue.isOpen() || url.path().find('\0') != std::string::npos
        || ::inotify_add_watch(queue.get(), url.path().c_str(), entryEvents | endEvents | IN_ONLYDIR) < 0)
        return nullptr;
    return std::make_shared<DirectoryWatch>(std::move(target), std::move(queue), std::move(changed), std::move(ended));
}

DirectoryWatch::DirectoryWatch(Target target, FileDescriptor queue, Handler changed, Handler ended)
    : target_(std::move(target))
    , queue_(std::move(queue))
    , changed_(std::move(changed))
    , ended_(std::move(ended))
    , notifier_(queue_.get(), QSocketNotifier::Read)
{
    QObject::connect(&notifier_, &QSocketNotifier::activated, [this] { queueIsReadable(); });
    // What stays in the queue would wake the event loop again and again.
    QObject::connect(target_.dispatch, &QObject::destroyed, &notifier_, [this] { notifier_.setEnabled(false); });
}

DirectoryWatch::Events DirectoryWatch::drain()
{
    Events events;
    alignas(inotify_event) std::array<char, 64 * 1024> buffer;
    for (;;) {
        auto const count = ::read(queue_.get(), buffer.data(), buffer.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return events;
        for (std::size_t position = 0; position < static_cast<std::size_t>(count);) {
            inotify_event event {};
            std::memcpy(&event, buffer.data() + position, sizeof event);
            position += sizeof event + event.len;
            events.haveChanged = events.haveChanged || (event.mask & changes) != 0;
            events.haveEnded = events.haveEnded || (event.mask & ends) != 0;
        }
    }
}

void DirectoryWatch::queueIsReadable()
{
    auto const events = drain();
    if (events.haveEnded)
        notifier_.setEnabled(false);
    waiting_.haveChanged = waiting_.haveChanged || events.haveChanged;
    waiting_.haveEnded = waiting_.haveEnded || events.haveEnded;
    if ((!waiting_.haveChanged && !waiting_.haveEnded) || std::exchange(isDeliveryQueued_, true))
        return;
    target_.gate->deliver([weakSelf = weak_from_this()] {
        if (auto const self = weakSelf.lock())
            self->deliver();
    });
}

void DirectoryWatch::deliver()
{
    if (!target_.dispatch)
        return;
    isDeliveryQueued_ = false;
    auto const events = std::exchange(waiting_, {});
    // Copies, since the watch may end in its handler.
    auto const handler = events.haveEnded ? ended_ : changed_;
    handler();
}

}
