#include "Freedesktop/Files/HiddenNames.h"

#include "Freedesktop/Files/RegularFile.h"

#include <algorithm>
#include <utility>
#include <variant>

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

HiddenNames::HiddenNames(int directory)
{
    auto content = readRegularFile(directory, hiddenNamesFile, largestNamesFile);
    auto* const text = std::get_if<std::string>(&content);
    if (!text)
        return;
    text_ = std::move(*text);
    names_ = linesOf(text_);
}

}
