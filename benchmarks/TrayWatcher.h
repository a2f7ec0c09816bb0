#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <unordered_map>

struct xcb_connection_t;

namespace marrowick::benchmarks {

/// Sees from outside when an icon shows in the status area: a window that is neither the area's own nor this program's
/// has been taken into another window and mapped there.
class TrayWatcher {
public:
    /// Stops the program where there is no display.
    TrayWatcher();

    /// Waits for a status area. False when none came in time.
    bool waitForTray(std::chrono::milliseconds patience);

    /// Forgets the icons seen so far.
    void reset() { windows_.clear(); }

    /// Waits until an icon has been shown that was made since the last `reset`. False when none came in time.
    bool waitForIcon(std::chrono::milliseconds patience);

private:
    struct Window {
        bool isEmbedded = false;
        bool isMapped = false;
    };

    bool takeEvents();
    void watch(std::uint32_t window);

    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection_;
    std::uint32_t root_ = 0;
    /// The bits of a window's number that tell its client.
    std::uint32_t clientMask_ = 0;
    std::uint32_t trayClient_ = 0;
    std::unordered_map<std::uint32_t, Window> windows_;
};

}
