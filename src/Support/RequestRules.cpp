#include "Support/RequestRules.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace marrowick {

namespace {

struct Operation {
    std::string_view name;
    TransferMode mode;
};

/// In the order of the buttons that choose among them.
constexpr std::array operations {
    Operation { "move", TransferMode::move },
    Operation { "copy", TransferMode::copy },
    Operation { "alias", TransferMode::alias },
};

std::string quotedName(FileURL const& url)
{
    return "“" + std::string(url.lastPathComponent()) + "”";
}

/// The line without line ends of its own, which a name may hold: nothing in a name shall look like a line.
std::string asOneLine(std::string const& line)
{
    std::string result;
    for (char const byte : line) {
        if (byte == '\n')
            result += "␊";
        else
            result += byte;
    }
    return result;
}

/// The path without empty and "." components, and with ".." taken back, whatever stands on the disk.
std::string standardized(FileURL const& url)
{
    auto path = std::filesystem::path(url.path()).lexically_normal().string();
    if (path.size() > 1 && path.ends_with('/'))
        path.pop_back();
    return path;
}

}

bool RequestRules::isAllowed(std::string_view op)
{
    return op == "ask" || mode(op);
}

std::optional<TransferMode> RequestRules::mode(std::string_view op)
{
    auto const* const found = std::find_if(
        operations.begin(), operations.end(), [&](auto const& operation) { return operation.name == op; });
    return found == operations.end() ? std::nullopt : std::optional(found->mode);
}

std::string_view RequestRules::operation(TransferMode mode)
{
    return std::find_if(operations.begin(), operations.end(), [&](auto const& operation) {
        return operation.mode == mode;
    })->name;
}

Alert RequestRules::question(MoveRequest const& request, FileURL const& destination)
{
    auto const& sources = request.sources;
    auto const items
        = sources.size() == 1 ? quotedName(FileURL(sources.front())) : std::to_string(sources.size()) + " items";
    return {
        .style = AlertStyle::warning,
        .messageText = "What would you like to do?",
        .informativeText = items + " → " + quotedName(destination),
        .buttons = { "Move Here", "Copy Here", "Alias Here", "Cancel" },
    };
}

std::optional<TransferMode> RequestRules::mode(std::size_t answer)
{
    return answer < operations.size() ? std::optional(operations[answer].mode) : std::nullopt;
}

ItemVerdict RequestRules::verdict(FileURL const& item, FileURL const& destination, TransferMode mode)
{
    auto const target = standardized(destination);
    if (mode != TransferMode::copy && standardized(item.deletingLastPathComponent()) == target)
        return ItemVerdict::skip;
    if (target.starts_with(standardized(item) + "/"))
        return ItemVerdict::refuse;
    return ItemVerdict::transfer;
}

std::string RequestRules::refusal(FileURL const& item)
{
    return "Can't put " + quotedName(item) + " inside itself.";
}

std::string RequestRules::failure(FileURL const& item, std::string_view reason)
{
    return quotedName(item) + ": " + std::string(reason);
}

Alert RequestRules::report(TransferMode mode, std::vector<std::string> const& lines)
{
    Alert alert { .style = AlertStyle::warning,
        .messageText = "Marrowick couldn't " + std::string(operation(mode)) + " everything",
        .informativeText = "",
        .buttons = {},
        .lineFeed = LineFeed::endOfLine };
    for (auto const& line : lines) {
        if (&line != &lines.front())
            alert.informativeText += '\n';
        alert.informativeText += asOneLine(line);
    }
    return alert;
}

}
