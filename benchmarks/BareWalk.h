#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace marrowick::benchmarks {

/// Lists a folder and the folders in it, down to a depth, with `openat` and `getdents64` and nothing else: the least that a
/// walk to the limits of a snapshot takes. Nothing is sorted, no path is made, packages and hidden names in ".hidden" are
/// not looked for.
class BareWalk {
public:
    BareWalk(int deepest, std::size_t mostChildren, int mostNodes)
        : deepest_(deepest)
        , mostChildren_(mostChildren)
        , mostNodes_(mostNodes)
    {
    }

    /// How many folders were found below these, which share the allowance.
    int count(std::vector<std::string> const& folders) const;

private:
    int countBelow(int parent, char const* name, int depth, int& budget) const;

    int deepest_;
    std::size_t mostChildren_;
    int mostNodes_;
};

}
