#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

/// Names one after the other in one piece of memory, which is kept when they are taken away: for lists that are filled
/// again and again.
class NameList {
public:
    std::size_t size() const { return spans_.size(); }

    /// Valid until names are added or taken away.
    std::string_view operator[](std::size_t index) const
    {
        auto const [begin, length] = spans_[index];
        return std::string_view(bytes_).substr(begin, length);
    }

    void add(std::string_view name)
    {
        spans_.push_back({ bytes_.size(), name.size() });
        bytes_.append(name);
    }

    /// Takes away those from `first` on for which `condition` holds.
    template<typename Condition>
    void removeIf(std::size_t first, Condition condition)
    {
        auto const begin = spans_.begin() + static_cast<std::ptrdiff_t>(first);
        auto const isToGo
            = [&](Span const& span) { return condition(std::string_view(bytes_).substr(span.begin, span.length)); };
        spans_.erase(std::remove_if(begin, spans_.end(), isToGo), spans_.end());
    }

    /// Takes away all but the first `size`.
    void shrink(std::size_t size)
    {
        spans_.resize(std::min(size, spans_.size()));
        bytes_.resize(spans_.empty() ? 0 : spans_.back().begin + spans_.back().length);
    }

private:
    struct Span {
        std::size_t begin;
        std::size_t length;
    };

    std::string bytes_;
    std::vector<Span> spans_;
};

}
