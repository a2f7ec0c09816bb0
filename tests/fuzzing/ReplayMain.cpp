// Puts every file of the given folders through a target, for builds without the fuzzer.

#include "fuzzing/Fuzzing.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

using Paths = std::vector<std::filesystem::path>;

Paths inputsIn(std::filesystem::path const& folder)
{
    Paths inputs;
    for (auto const& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.is_regular_file())
            inputs.push_back(entry.path());
    }
    std::sort(inputs.begin(), inputs.end());
    return inputs;
}

void replay(std::filesystem::path const& input)
{
    // Where the process ends, the last name tells what ended it.
    std::printf("%s\n", input.c_str());
    std::fflush(stdout);
    std::ifstream stream(input, std::ios::binary);
    // No byte more than the file has, so that a sanitizer sees a read past the end.
    std::vector<char> bytes(std::istreambuf_iterator<char>(stream), {});
    bytes.shrink_to_fit();
    marrowick::fuzz({ bytes.data(), bytes.size() });
}

}

int main(int argc, char** argv)
{
    try {
        std::size_t count = 0;
        for (auto const* folder : std::vector<char const*>(argv + 1, argv + argc)) {
            for (auto const& input : inputsIn(folder)) {
                replay(input);
                ++count;
            }
        }
        std::printf("%zu inputs\n", count);
        return count > 0 ? 0 : 1;
    } catch (std::exception const& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
