#include "Support/ExchangeCoding.h"

#include "Support/InternetDate.h"

#include <boost/json.hpp>

#include <exception>
#include <new>

namespace marrowick {

namespace {

namespace json = boost::json;

/// Values take many times the room of the text that they were read from.
constexpr std::size_t mostMemory = std::size_t { 512 } * 1024 * 1024;
constexpr std::size_t deepestNesting = 128;

/// Memory that runs out.
class LimitedMemory final : public json::memory_resource {
private:
    void* do_allocate(std::size_t size, std::size_t alignment) override
    {
        if (size > mostMemory - used_)
            throw std::bad_alloc();
        used_ += size;
        return ::operator new(size, std::align_val_t(alignment));
    }
    void do_deallocate(void* memory, std::size_t size, std::size_t alignment) override
    {
        used_ -= size;
        ::operator delete(memory, std::align_val_t(alignment));
    }
    bool do_is_equal(json::memory_resource const& other) const noexcept override { return this == &other; }

    std::size_t used_ = 0;
};

/// What `read` makes of the object that `bytes` hold.
template<typename Record>
std::optional<Record> decode(std::string_view bytes, std::optional<Record> (*read)(json::object const&))
{
    LimitedMemory memory;
    json::parse_options options;
    options.max_depth = deepestNesting;
    try {
        json::error_code error;
        auto const value = json::parse({ bytes.data(), bytes.size() }, error, &memory, options);
        auto const* const object = error ? nullptr : value.if_object();
        return object ? read(*object) : std::nullopt;
    } catch (std::exception const&) {
        return std::nullopt;
    }
}

std::optional<std::string> text(json::object const& object, char const* key)
{
    auto const* const value = object.if_contains(key);
    auto const* const string = value ? value->if_string() : nullptr;
    return string ? std::optional<std::string>(std::in_place, string->data(), string->size()) : std::nullopt;
}

json::array const* array(json::object const& object, char const* key)
{
    auto const* const value = object.if_contains(key);
    return value ? value->if_array() : nullptr;
}

std::optional<std::vector<SnapshotNode>> nodes(json::array const* values);

std::optional<SnapshotNode> node(json::object const& object)
{
    auto name = text(object, "name");
    auto path = text(object, "path");
    auto children = nodes(array(object, "children"));
    if (!name || !path || !children)
        return std::nullopt;
    return SnapshotNode { std::move(*name), std::move(*path), std::move(*children) };
}

std::optional<std::vector<SnapshotNode>> nodes(json::array const* values)
{
    if (!values)
        return std::nullopt;
    std::vector<SnapshotNode> nodes;
    nodes.reserve(values->size());
    for (auto const& value : *values) {
        auto const* const object = value.if_object();
        auto decoded = object ? node(*object) : std::nullopt;
        if (!decoded)
            return std::nullopt;
        nodes.push_back(std::move(*decoded));
    }
    return nodes;
}

std::optional<Snapshot> snapshotFrom(json::object const& object)
{
    auto const written = text(object, "generated");
    auto const generated = written ? dateFromInternetText(*written) : std::nullopt;
    auto roots = nodes(array(object, "roots"));
    if (!generated || !roots)
        return std::nullopt;
    return Snapshot { *generated, std::move(*roots) };
}

std::optional<MoveRequest> requestFrom(json::object const& object)
{
    auto op = text(object, "op");
    auto dest = text(object, "dest");
    auto const* const sources = array(object, "sources");
    if (!op || !dest || !sources)
        return std::nullopt;
    MoveRequest request { std::move(*op), std::move(*dest), {} };
    request.sources.reserve(sources->size());
    for (auto const& source : *sources) {
        auto const* const path = source.if_string();
        if (!path)
            return std::nullopt;
        request.sources.emplace_back(path->data(), path->size());
    }
    return request;
}

json::value valueOf(std::vector<SnapshotNode> const& nodes, json::storage_ptr const& memory)
{
    json::array values(memory);
    values.reserve(nodes.size());
    for (auto const& node : nodes) {
        values.push_back(json::object(
            { { "name", node.name }, { "path", node.path }, { "children", valueOf(node.children, memory) } }, memory));
    }
    return values;
}

/// A slash stands nowhere but inside texts.
std::string withEscapedSlashes(std::string_view encoded)
{
    std::string bytes;
    bytes.reserve(encoded.size() + encoded.size() / 8);
    for (std::size_t begin = 0; begin < encoded.size();) {
        auto const slash = std::min(encoded.find('/', begin), encoded.size());
        bytes.append(encoded, begin, slash - begin);
        if (slash < encoded.size())
            bytes += "\\/";
        begin = slash + 1;
    }
    return bytes;
}

}

std::optional<std::string> encode(Snapshot const& snapshot)
{
    auto const generated = internetDateText(snapshot.generated);
    if (!generated)
        return std::nullopt;
    try {
        json::monotonic_resource memory;
        json::value const document
            = json::object({ { "generated", *generated }, { "roots", valueOf(snapshot.roots, &memory) } }, &memory);
        return withEscapedSlashes(json::serialize(document));
    } catch (std::exception const&) {
        return std::nullopt;
    }
}

std::optional<Snapshot> decodeSnapshot(std::string_view bytes)
{
    return decode(bytes, snapshotFrom);
}

std::optional<MoveRequest> decodeMoveRequest(std::string_view bytes)
{
    return decode(bytes, requestFrom);
}

}
