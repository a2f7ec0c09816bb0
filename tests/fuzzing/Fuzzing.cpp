#include "fuzzing/Fuzzing.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace marrowick {

void require(bool holds, char const* fact)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", fact);
    std::abort();
}

}

/// The fuzzer calls it by this name.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size)
{
    marrowick::fuzz({ reinterpret_cast<char const*>(bytes), size });
    return 0;
}
