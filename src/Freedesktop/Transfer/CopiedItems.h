#pragma once

#include <cstdint>
#include <map>
#include <sys/stat.h>
#include <utility>

namespace marrowick {

/// Remembers which items of a tree were copied, and in which state, so that nothing else is removed with them.
class CopiedItems {
public:
    /// Of an item with several names the state counts that it had at the first, when its content was copied.
    void add(struct stat const& item) { items_.try_emplace(keyOf(item), stateOf(item)); }

    /// Whether the item is one that was copied, and has not changed since. The contents of a directory are not part of its
    /// state: each is judged by itself.
    bool holds(struct stat const& item) const
    {
        auto const copied = items_.find(keyOf(item));
        return copied != items_.end() && (S_ISDIR(item.st_mode) || copied->second == stateOf(item));
    }

private:
    using Key = std::pair<std::uint64_t, std::uint64_t>;
    struct State {
        std::int64_t size;
        std::int64_t seconds;
        std::int64_t nanoseconds;
        friend bool operator==(State const&, State const&) = default;
    };

    static Key keyOf(struct stat const& item) { return { item.st_dev, item.st_ino }; }
    static State stateOf(struct stat const& item)
    {
        return { item.st_size, item.st_mtim.tv_sec, item.st_mtim.tv_nsec };
    }

    std::map<Key, State> items_;
};

}
