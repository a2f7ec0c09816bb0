#pragma once

#include <cstdint>

namespace marrowick {

/// How an item is put into a folder.
enum class TransferMode : std::uint8_t {
    move = 0,
    copy = 1,
    alias = 2,
};

}
