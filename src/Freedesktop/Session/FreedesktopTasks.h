#pragma once

#include "Platform/Tasks.h"

namespace marrowick {

/// The started processes have sessions of their own: what ends the terminal that this process may have been started
/// from does not end them. They have default signal handling whatever this process ignores or blocks, and leave no
/// zombies.
class FreedesktopTasks : public Tasks {
public:
    TaskEnvironment environment() const override;
    Result<void> launch(Task const& task) override;
};

}
