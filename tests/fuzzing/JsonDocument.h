#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <boost/json.hpp>

/// The plain way to read a record, which keeps the whole document in memory: what the program reads is held against it.
namespace marrowick::document {

namespace json = boost::json;

/// Absent where the bytes are not one JSON object.
inline std::optional<json::object> parsed(std::string_view bytes)
{
    json::parse_options options;
    options.max_depth = 128;
    json::error_code error;
    auto const value = json::parse({ bytes.data(), bytes.size() }, error, {}, options);
    if (error || !value.is_object())
        return std::nullopt;
    return value.get_object();
}

inline std::optional<std::string> text(json::value const* value)
{
    auto const* const string = value ? value->if_string() : nullptr;
    return string ? std::optional<std::string>(std::in_place, string->data(), string->size()) : std::nullopt;
}

inline json::array const* array(json::object const& object, char const* key)
{
    auto const* const value = object.if_contains(key);
    return value ? value->if_array() : nullptr;
}

}
