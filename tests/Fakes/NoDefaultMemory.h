#pragma once

#include <memory_resource>

namespace marrowick {

/// While it stands, whatever is not given its memory finds none.
class NoDefaultMemory {
public:
    NoDefaultMemory() = default;
    ~NoDefaultMemory() { std::pmr::set_default_resource(before_); }
    NoDefaultMemory(NoDefaultMemory const&) = delete;
    NoDefaultMemory& operator=(NoDefaultMemory const&) = delete;

private:
    std::pmr::memory_resource* before_ = std::pmr::set_default_resource(std::pmr::null_memory_resource());
};

}
