// A request as anybody may have written it, and the judgement of its items.

#include "fuzzing/Fuzzing.h"
#include "fuzzing/JsonDocument.h"

#include "Support/Characters.h"
#include "Support/ExchangeCoding.h"
#include "Support/RequestRules.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

namespace {

std::optional<MoveRequest> readPlainly(std::string_view bytes)
{
    auto const object = document::parsed(bytes);
    if (!object)
        return std::nullopt;
    auto const op = document::text(object->if_contains("op"));
    auto const dest = document::text(object->if_contains("dest"));
    auto const* const sources = document::array(*object, "sources");
    if (!op || !dest || !sources)
        return std::nullopt;
    MoveRequest request { *op, *dest, {} };
    for (auto const& source : *sources) {
        auto path = document::text(&source);
        if (!path)
            return std::nullopt;
        request.sources.push_back(std::move(*path));
    }
    return request;
}

std::string quoted(std::string_view text)
{
    std::string result = "\"";
    for (char const byte : text) {
        if (static_cast<unsigned char>(byte) < 0x20) {
            std::array<char, 8> escape {};
            std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(byte));
            result += escape.data();
            continue;
        }
        if (byte == '"' || byte == '\\')
            result += '\\';
        result += byte;
    }
    return result + "\"";
}

/// The request with its keys in the reverse order and one key too many.
std::string written(MoveRequest const& request)
{
    std::string sources;
    for (auto const& source : request.sources)
        sources += (sources.empty() ? "" : " ,\n") + quoted(source);
    return "{ \"sources\" : [" + sources + "],\"dest\": " + quoted(request.dest)
        + ",\t\"version\": [{}, 1e3, null], \"op\":" + quoted(request.op) + "}\r\n";
}

using Components = std::vector<std::string>;

Components componentsOf(std::string_view path)
{
    Components components;
    while (!path.empty()) {
        auto const length = std::min(path.find('/'), path.size());
        auto const component = path.substr(0, length);
        path.remove_prefix(std::min(length + 1, path.size()));
        if (component == "..") {
            if (!components.empty())
                components.pop_back();
        } else if (!component.empty() && component != ".") {
            components.emplace_back(component);
        }
    }
    return components;
}

/// The verdict by lists of components. An item that is the root cannot be seen to hold anything.
ItemVerdict expectedVerdict(FileURL const& item, FileURL const& destination, TransferMode mode)
{
    auto const target = componentsOf(destination.path());
    if (mode != TransferMode::copy && componentsOf(item.deletingLastPathComponent().path()) == target)
        return ItemVerdict::skip;
    auto const whole = componentsOf(item.path());
    bool const isInside
        = !whole.empty() && whole.size() < target.size() && std::equal(whole.begin(), whole.end(), target.begin());
    return isInside ? ItemVerdict::refuse : ItemVerdict::transfer;
}

void judge(MoveRequest const& request)
{
    FileURL const destination(request.dest, true);
    auto const question = RequestRules::question(request, destination);
    require(isValidUTF8(question.informativeText), "what the user is asked is UTF-8");
    require(RequestRules::isAllowed(request.op) || !RequestRules::mode(request.op),
        "an operation that is not allowed has no mode");
    if (!request.dest.starts_with('/'))
        return;
    for (auto const& source : request.sources) {
        // Nothing else is ever judged.
        if (!source.starts_with('/'))
            continue;
        FileURL const item(source);
        for (auto const mode : { TransferMode::move, TransferMode::copy, TransferMode::alias }) {
            require(RequestRules::verdict(item, destination, mode) == expectedVerdict(item, destination, mode),
                "the verdict is the one that the components give");
        }
        require(isValidUTF8(RequestRules::refusal(item)), "what the user is told is UTF-8");
    }
}

}

void fuzz(std::string_view input)
{
    auto const request = decodeMoveRequest(input);
    require(request == readPlainly(input), "a request is what the document says, and all else is none");
    if (!request)
        return;
    require(isValidUTF8(input), "what is decoded is UTF-8");
    require(isValidUTF8(request->op) && isValidUTF8(request->dest), "the texts of a request are UTF-8");
    require(std::all_of(request->sources.begin(), request->sources.end(), isValidUTF8), "the sources are UTF-8");
    require(decodeMoveRequest(written(*request)) == request, "a request that is written anew reads the same");
    require(decodeMoveRequest(std::string(input) + " \n\t\r") == request, "white space at the end means nothing");
    require(!decodeMoveRequest(std::string(input) + "}"), "nothing but white space follows a request");
    require(!decodeMoveRequest(input.substr(0, input.rfind('}'))), "a request that is cut off is none");
    judge(*request);
}

}
