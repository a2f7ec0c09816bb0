// A snapshot as anybody may have written it, and as the program writes it.

#include "fuzzing/Fuzzing.h"
#include "fuzzing/JsonDocument.h"

#include "Support/Characters.h"
#include "Support/ExchangeCoding.h"
#include "Support/InternetDate.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace marrowick {

namespace {

std::optional<SnapshotNodes> nodesReadPlainly(document::json::array const* values)
{
    if (!values)
        return std::nullopt;
    SnapshotNodes nodes;
    for (auto const& value : *values) {
        auto const* const object = value.if_object();
        if (!object)
            return std::nullopt;
        auto name = document::text(object->if_contains("name"));
        auto path = document::text(object->if_contains("path"));
        auto children = nodesReadPlainly(document::array(*object, "children"));
        if (!name || !path || !children)
            return std::nullopt;
        nodes.push_back({ std::move(*name), std::move(*path), std::move(*children) });
    }
    return nodes;
}

std::optional<Snapshot> readPlainly(std::string_view bytes)
{
    auto const object = document::parsed(bytes);
    auto const written = object ? document::text(object->if_contains("generated")) : std::nullopt;
    auto const generated = written ? dateFromInternetText(*written) : std::nullopt;
    auto roots = object ? nodesReadPlainly(document::array(*object, "roots")) : std::nullopt;
    if (!generated || !roots)
        return std::nullopt;
    return Snapshot { *generated, std::move(*roots) };
}

/// How many nodes there are, each of which is looked at.
std::size_t checked(SnapshotNodes const& nodes, std::unordered_set<std::string_view> const& paths)
{
    std::size_t count = nodes.size();
    for (auto const& node : nodes) {
        require(isValidUTF8(node.name) && isValidUTF8(node.path), "the texts of a snapshot are UTF-8");
        require(paths.contains(node.path), "every node's path is a known destination");
        count += checked(node.children, paths);
    }
    return count;
}

/// Compact, and no slash without its backslash.
void checkForm(std::string_view bytes)
{
    require(bytes.starts_with("{\"generated\":\"") && bytes.ends_with("]}"), "the keys stand in their order");
    require(isValidUTF8(bytes), "what is written is UTF-8");
    bool inText = false;
    bool escaped = false;
    for (char const byte : bytes) {
        require(static_cast<unsigned char>(byte) >= 0x20, "no control character is written as it is");
        require(byte != '/' || escaped, "every slash is escaped");
        require(byte != ' ' || inText, "no space stands outside texts");
        if (byte == '"' && !escaped)
            inText = !inText;
        escaped = byte == '\\' && !escaped;
    }
}

}

void fuzz(std::string_view input)
{
    auto const snapshot = decodeSnapshot(input);
    require(snapshot == readPlainly(input), "a snapshot is what the document says, and all else is none");
    if (!snapshot)
        return;
    require(isValidUTF8(input), "what is decoded is UTF-8");
    require(snapshot->generated.time_since_epoch() % std::chrono::seconds(1) == std::chrono::nanoseconds(0),
        "a snapshot is dated by whole seconds");
    auto const paths = snapshot->allPaths();
    require(paths.size() <= checked(snapshot->roots, paths), "there are no more destinations than nodes");
    require(!decodeSnapshot(input.substr(0, input.rfind('}'))), "a snapshot that is cut off is none");

    auto const bytes = encode(*snapshot);
    require(bytes.has_value(), "what was decoded can be encoded");
    checkForm(*bytes);
    auto const again = decodeSnapshot(*bytes);
    require(again == snapshot, "an encoded snapshot decodes to itself");
    require(encode(*again) == bytes, "a snapshot has one encoding");
}

}
