#pragma once

#include "Platform/DefaultsStore.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace marrowick {

/// Settings in memory.
class FakeDefaultsStore final : public DefaultsStore {
public:
    std::optional<DefaultsValue> object(std::string_view key) override
    {
        auto const found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }

    void set(std::string_view key, DefaultsValue const& value) override { values[std::string(key)] = value; }

    std::map<std::string, DefaultsValue, std::less<>> values;
};

}
