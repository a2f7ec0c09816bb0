#pragma once

#include <compare>
#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace marrowick {

/// Texts made ready for many comparisons with each other. Independent of the texts it was made from, but not of the
/// collation. One thread at a time.
class PreparedTexts {
public:
    virtual ~PreparedTexts() = default;

    /// Puts other texts in the place of all, in the memory of those.
    virtual void assign(std::vector<std::string_view> const& texts) = 0;

    /// Compares the texts at two positions, as `Collation::compare` does.
    virtual std::weak_ordering compare(std::size_t a, std::size_t b) const = 0;

    /// Puts positions in the order of their texts, those of equal texts in their own.
    virtual void sort(std::span<std::size_t> positions) const = 0;
};

/// The user's order of names: by the locale's rules, without regard to case, numbers by their value. Any thread.
class Collation {
public:
    virtual ~Collation() = default;

    virtual std::weak_ordering compare(std::string_view a, std::string_view b) const = 0;

    /// Holds no texts yet.
    virtual std::unique_ptr<PreparedTexts> prepare() const = 0;

    std::unique_ptr<PreparedTexts> prepare(std::vector<std::string_view> const& texts) const
    {
        auto prepared = prepare();
        prepared->assign(texts);
        return prepared;
    }

    /// Whether `text` holds `fragment`, compared by the locale's rules without regard to case; accents count. Nothing
    /// holds the empty fragment.
    virtual bool containsCaseInsensitively(std::string_view text, std::string_view fragment) const = 0;
};

}
