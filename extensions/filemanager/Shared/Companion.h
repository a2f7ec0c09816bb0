#pragma once

#include "Shared/StateService.h"
#include "Shared/TransferMenu.h"

#include <memory>
#include <string>
#include <utility>

namespace marrowick::companion {

/// All that is the same in every file manager. Main thread only.
struct Companion {
    /// `fileManager` becomes a part of the bus name.
    Companion(std::string fileManager, StateService::Question question)
        : service(std::move(fileManager), std::move(question))
    {
    }

    /// Entries that are shown may outlive the companion.
    std::shared_ptr<TransferMenu> menu = std::make_shared<TransferMenu>(Destinations::usersFolder());
    StateService service;
};

}
