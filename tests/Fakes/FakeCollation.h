#pragma once

#include "Platform/Collation.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace marrowick {

/// The same order on every machine: ASCII letters without regard to case, runs of digits by their value, other bytes as
/// they are.
class FakeCollation final : public Collation {
public:
    std::weak_ordering compare(std::string_view a, std::string_view b) const override
    {
        while (!a.empty() && !b.empty()) {
            auto const order = isDigit(a.front()) && isDigit(b.front()) ? compareNumbers(a, b) : compareLetters(a, b);
            if (order != 0)
                return order;
        }
        return a.size() <=> b.size();
    }

    using Collation::prepare;
    std::unique_ptr<PreparedTexts> prepare() const override { return std::make_unique<Prepared>(); }

    bool containsCaseInsensitively(std::string_view text, std::string_view fragment) const override
    {
        auto const sameLetter = [](char a, char b) { return lowered(a) == lowered(b); };
        return !fragment.empty()
            && std::search(text.begin(), text.end(), fragment.begin(), fragment.end(), sameLetter) != text.end();
    }

private:
    class Prepared final : public PreparedTexts {
    public:
        void assign(std::vector<std::string_view> const& texts) override { texts_.assign(texts.begin(), texts.end()); }
        std::weak_ordering compare(std::size_t a, std::size_t b) const override
        {
            return FakeCollation().compare(texts_.at(a), texts_.at(b));
        }
        void sort(std::span<std::size_t> positions) const override
        {
            std::sort(positions.begin(), positions.end(), [this](std::size_t a, std::size_t b) {
                auto const order = compare(a, b);
                return order != 0 ? order < 0 : a < b;
            });
        }

    private:
        std::vector<std::string> texts_;
    };

    static bool isDigit(char character) { return character >= '0' && character <= '9'; }

    static unsigned char lowered(char character)
    {
        bool const isUpper = character >= 'A' && character <= 'Z';
        return static_cast<unsigned char>(isUpper ? character + ('a' - 'A') : character);
    }

    /// Takes one letter off each text.
    static std::weak_ordering compareLetters(std::string_view& a, std::string_view& b)
    {
        auto const order = lowered(a.front()) <=> lowered(b.front());
        a.remove_prefix(1);
        b.remove_prefix(1);
        return order;
    }

    /// Takes one number off each text.
    static std::weak_ordering compareNumbers(std::string_view& a, std::string_view& b)
    {
        auto const left = takeNumber(a);
        auto const right = takeNumber(b);
        return left.size() != right.size() ? left.size() <=> right.size() : left.compare(right) <=> 0;
    }

    /// The digits of the number at the front of `text`, without leading zeros.
    static std::string_view takeNumber(std::string_view& text)
    {
        auto const end = std::find_if_not(text.begin(), text.end(), isDigit);
        auto number = text.substr(0, static_cast<std::size_t>(end - text.begin()));
        text.remove_prefix(number.size());
        number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
        return number;
    }
};

}
