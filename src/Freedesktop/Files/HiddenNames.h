#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

namespace marrowick {

/// The name of the file by which a folder hides items that have no leading dot.
inline constexpr char hiddenNamesFile[] = ".hidden";

/// The names in that file of an open directory, one on each line; none where it cannot be read.
class HiddenNames {
public:
    explicit HiddenNames(int directory);
    HiddenNames(HiddenNames const&) = delete;
    HiddenNames& operator=(HiddenNames const&) = delete;

    bool contains(std::string_view name) const { return names_.contains(name); }

private:
    std::string text_;
    /// Parts of the text.
    std::unordered_set<std::string_view> names_;
};

}
