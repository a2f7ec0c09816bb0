#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace marrowick {

/// Sorts by merging runs of doubling length. Stable, and defined for every `comesBefore`, also for one that is no
/// strict weak order, of which the standard library's sorts make undefined behaviour.
template<typename T, typename ComesBefore>
void mergeSort(std::vector<T>& values, ComesBefore comesBefore)
{
    std::vector<T> merged(values.size());
    for (std::size_t length = 1; length < values.size(); length *= 2) {
        for (std::size_t start = 0; start < values.size(); start += 2 * length) {
            auto const middle = std::min(start + length, values.size());
            auto const end = std::min(start + 2 * length, values.size());
            auto left = start;
            auto right = middle;
            for (auto position = start; position < end; ++position) {
                bool const takeRight = left == middle || (right < end && comesBefore(values[right], values[left]));
                merged[position] = values[takeRight ? right++ : left++];
            }
        }
        values.swap(merged);
    }
}

}
