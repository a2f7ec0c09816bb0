#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace marrowick {

/// A value of a type that no setting of the program has (a list, a dictionary).
struct ForeignValue {
    friend bool operator==(ForeignValue, ForeignValue) = default;
};

/// A stored value. Every number of the store is a `double`.
using DefaultsValue = std::variant<bool, double, std::string, ForeignValue>;

/// The user's settings: a value by its key, or its absence. Main thread only.
class DefaultsStore {
public:
    virtual ~DefaultsStore() = default;

    /// What is stored at this moment, whoever wrote it.
    virtual std::optional<DefaultsValue> object(std::string_view key) = 0;

    /// Stores `value`; the next `object` returns it. Where nothing can be stored the system log says so once.
    virtual void set(std::string_view key, DefaultsValue const& value) = 0;
};

}
