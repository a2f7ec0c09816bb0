#include "Support/MergeSort.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {
namespace {

using Item = std::pair<int, int>;

/// Items of few keys, numbered in their order.
std::vector<Item> randomItems(std::mt19937& random, std::size_t count)
{
    std::uniform_int_distribution<int> key(0, static_cast<int>(count / 3));
    std::vector<Item> items;
    for (std::size_t index = 0; index < count; ++index)
        items.emplace_back(key(random), static_cast<int>(index));
    return items;
}

TEST(MergeSortTest, SortsAsTheStandardStableSortDoes)
{
    std::mt19937 random(1);
    auto const byKey = [](Item const& a, Item const& b) { return a.first < b.first; };
    auto const byKeyDescending = [](Item const& a, Item const& b) { return a.first > b.first; };
    for (std::size_t count = 0; count < 300; ++count) {
        auto items = randomItems(random, count);
        auto expected = items;
        mergeSort(items, byKey);
        std::stable_sort(expected.begin(), expected.end(), byKey);
        ASSERT_EQ(items, expected) << count;
        mergeSort(items, byKeyDescending);
        std::stable_sort(expected.begin(), expected.end(), byKeyDescending);
        ASSERT_EQ(items, expected) << count;
    }
}

TEST(MergeSortTest, EqualValuesKeepTheirOrder)
{
    std::vector<int> values { 3, 1, 2 };
    mergeSort(values, [](int, int) { return false; });
    EXPECT_EQ(values, (std::vector { 3, 1, 2 }));
}

TEST(MergeSortTest, AnOrderThatIsNoneLosesAndInventsNothing)
{
    std::mt19937 random(2);
    std::vector<bool (*)(int, int)> const orders {
        [](int, int) { return true; },
        // Every third value ties with all others.
        [](int a, int b) { return a % 3 != 0 && b % 3 != 0 && a > b; },
        // Rock, paper, scissors.
        [](int a, int b) { return (a + 1) % 3 == b % 3; },
    };
    for (auto const order : orders) {
        for (std::size_t count = 0; count < 200; ++count) {
            std::vector<int> values(count);
            std::iota(values.begin(), values.end(), 0);
            std::shuffle(values.begin(), values.end(), random);
            auto expected = values;
            mergeSort(values, order);
            std::sort(values.begin(), values.end());
            std::sort(expected.begin(), expected.end());
            ASSERT_EQ(values, expected);
        }
    }
    // An answer that changes from question to question.
    std::vector<int> values(1000);
    std::iota(values.begin(), values.end(), 0);
    mergeSort(values, [&](int, int) { return random() % 2 == 0; });
    std::sort(values.begin(), values.end());
    for (int value = 0; value < 1000; ++value)
        ASSERT_EQ(values[static_cast<std::size_t>(value)], value);
}

TEST(MergeSortTest, TheNumberOfComparisonsGrowsAlmostLinearly)
{
    std::vector<int> values(1 << 14);
    std::iota(values.begin(), values.end(), 0);
    std::shuffle(values.begin(), values.end(), std::mt19937(3));
    std::size_t comparisons = 0;
    mergeSort(values, [&](int a, int b) {
        ++comparisons;
        return a < b;
    });
    EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
    EXPECT_LE(comparisons, values.size() * 14);
}

}
}
