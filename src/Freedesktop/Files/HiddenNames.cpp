#include "Freedesktop/Files/HiddenNames.h"

#include "Freedesktop/Files/RegularFile.h"

#include <string>
#include <string_view>
#include <unordered_set>

namespace marrowick {

namespace {

constexpr std::size_t largestNamesFile = 1 << 20;

std::unordered_set<std::string_view> linesOf(std::string_view text)
{
    std::unordered_set<std::string_view> lines;
    while (!text.empty()) {
        auto const line = text.substr(0, text.find('\n'));
        if (!line.empty())
            lines.insert(line);
        text.remove_prefix(std::min(line.size() + 1, text.size()));
    }
    return lines;
}

}

void removeHiddenNames(int directory, std::vector<ListedItem>& items)
{
    auto const content = readRegularFile(directory, hiddenNamesFile, largestNamesFile);
    auto const* text = std::get_if<std::string>(&content);
    if (!text)
        return;
    auto const names = linesOf(*text);
    std::erase_if(items, [&](ListedItem const& item) { return names.contains(item.url.lastPathComponent()); });
}

}
