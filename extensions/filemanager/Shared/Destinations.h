#pragma once

#include "Support/Snapshot.h"

#include <sys/stat.h>

#include <memory>
#include <string>

namespace marrowick::companion {

/// The folders that the menu offers as destinations, as they were published last. Main thread only.
class Destinations {
public:
    /// In the folder where the two programs exchange files.
    explicit Destinations(std::string const& folder);

    /// The user's folder for that.
    static std::string usersFolder();

    /// Null where nothing readable is published. The same object as at the last call while nothing else was published:
    /// the file is read only when it has changed.
    std::shared_ptr<Snapshot const> current();

private:
    std::string file_;
    struct stat status_ { };
    std::shared_ptr<Snapshot const> snapshot_;
};

}
