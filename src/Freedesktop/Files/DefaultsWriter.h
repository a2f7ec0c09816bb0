#pragma once

#include "Freedesktop/GLibOwners.h"

#include <chrono>
#include <memory>
#include <optional>
#include <string>

typedef struct _DConfClient DConfClient;

namespace marrowick {

/// Writes values to the settings database from a thread of its own. The database's service is asked over the session
/// bus, and a bus that does not answer must not stop the program.
class DefaultsWriter {
public:
    /// How long one write may keep its caller.
    static constexpr std::chrono::milliseconds patience { 1500 };

    explicit DefaultsWriter(GObjectOwner<DConfClient> client);

    /// Gives what has not been written yet one more `patience`.
    ~DefaultsWriter();
    DefaultsWriter(DefaultsWriter const&) = delete;
    DefaultsWriter& operator=(DefaultsWriter const&) = delete;

    /// Writes `value` at `path` and returns once that is done, or when patience is over; then the write goes on. Returns
    /// why a value could not be written, this one or one that had been left behind.
    std::optional<std::string> write(std::string const& path, GVariantOwner value);

    /// The last value for `path` that is still to be written; null when there is none.
    GVariantOwner pendingValue(std::string const& path) const;

private:
    struct Shared;
    static void run(std::shared_ptr<Shared> const& shared);

    /// Shared with the thread, which outlives this object when the service does not answer.
    std::shared_ptr<Shared> shared_;
    bool isRunning_ = false;
};

}
