#pragma once

#include "Platform/DefaultsStore.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace marrowick::contract {

/// What every store does for its callers. The store is empty at first, and can be written to.
inline void defaultsStoreKeepsItsPromises(DefaultsStore& store)
{
    EXPECT_EQ(store.object("contractAbsent"), std::nullopt);

    std::vector<DefaultsValue> const values { true, false, 0.0, 1.0, -2.5, 1e300, std::numeric_limits<double>::lowest(),
        std::string(), std::string("alphabetical"), std::string("quotes ' \" and \\ and \n"),
        std::string("\xF0\x9F\x98\x80") };
    for (auto const& value : values) {
        store.set("contractKey", value);
        EXPECT_EQ(store.object("contractKey"), value);
        EXPECT_EQ(store.object("contractKey"), value) << "a second time";
    }

    // A false is not an absence, and a number is not a truth value.
    store.set("contractFalse", false);
    EXPECT_EQ(store.object("contractFalse"), DefaultsValue(false));
    store.set("contractZero", 0.0);
    EXPECT_NE(store.object("contractZero"), DefaultsValue(false));

    // Keys are told apart exactly.
    EXPECT_EQ(store.object("contractkey"), std::nullopt);
    EXPECT_EQ(store.object("contract"), std::nullopt);
    store.set("contractOther", std::string("other"));
    EXPECT_EQ(store.object("contractKey"), values.back());
}

}
