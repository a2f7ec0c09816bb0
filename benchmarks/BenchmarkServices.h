#pragma once

#include "Platform/Platform.h"

#include <string>

namespace marrowick::benchmarks {

/// Settings of the benchmark instead of the user's: the sort mode, and the built-in values for all else.
class FixedDefaults final : public DefaultsStore {
public:
    std::optional<DefaultsValue> object(std::string_view key) override
    {
        if (key == "sortMode")
            return DefaultsValue(sortMode);
        return std::nullopt;
    }
    void set(std::string_view, DefaultsValue const&) override { }

    std::string sortMode = "alphabetical";
};

}
