#pragma once

#include "Fakes/CallRecord.h"
#include "Platform/FileURL.h"
#include "Platform/ScriptingBridge.h"

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

namespace marrowick {

/// A file manager that answers scripts by their text. Without an answer from the test it has nothing selected and no
/// window, opens every information window, and a text that it does not know fails the test.
class FakeFinder final : public ScriptingBridge {
public:
    using Answer = std::variant<EventDescriptor, ScriptFailure>;

    static constexpr std::string_view selectionText = "tell application \"Finder\" to get (selection as alias list)";
    static constexpr std::string_view frontWindowText
        = "tell application \"Finder\" to get (target of front window as alias)";
    static constexpr std::string_view informationWindowStart
        = "tell application \"Finder\" to open information window of (POSIX file \"";
    static constexpr std::string_view informationWindowEnd = "\" as alias)";

    explicit FakeFinder(CallRecord& calls)
        : calls_(calls)
    {
    }

    Answer execute(std::string_view source) override
    {
        questions.emplace_back(source);
        if (auto const answer = answers.find(source); answer != answers.end())
            return answer->second;
        if (source == selectionText)
            return selectionAnswer();
        if (source == frontWindowText)
            return frontWindowAnswer();
        if (source.starts_with(informationWindowStart) && source.ends_with(informationWindowEnd))
            return informationWindowAnswer(source);
        ADD_FAILURE() << "a script that nobody expected: " << source;
        return ScriptFailure {};
    }

    std::size_t timesAsked(std::string_view text) const
    {
        return static_cast<std::size_t>(std::count(questions.begin(), questions.end(), text));
    }

    void selectTwoFiles() { selection = { FileURL("/selected/first.txt"), FileURL("/selected/second.txt") }; }

    static EventDescriptor reference(FileURL const& url)
    {
        return { EventDescriptor::FileReference { "file://" + percentEncoded(url.path()) } };
    }

    std::vector<FileURL> selection;
    std::optional<FileURL> frontWindow;
    /// The items whose information windows were opened.
    std::vector<FileURL> informationWindows;
    /// What the texts of this map are answered with, before anything else.
    std::map<std::string, Answer, std::less<>> answers;
    std::vector<std::string> questions;

private:
    Answer selectionAnswer() const
    {
        EventDescriptor::List list;
        for (auto const& url : selection)
            list.push_back(reference(url));
        return EventDescriptor { list };
    }

    Answer frontWindowAnswer() const
    {
        if (!frontWindow)
            return ScriptFailure {};
        return reference(*frontWindow);
    }

    Answer informationWindowAnswer(std::string_view source)
    {
        source.remove_prefix(informationWindowStart.size());
        source.remove_suffix(informationWindowEnd.size());
        std::string path;
        for (; !source.empty(); source.remove_prefix(1)) {
            if (source.front() == '"')
                ADD_FAILURE() << "the script's text ends early";
            if (source.front() == '\\' && source.size() > 1)
                source.remove_prefix(1);
            path += source.front();
        }
        calls_.push_back("information window of " + path);
        informationWindows.emplace_back(path);
        return EventDescriptor {};
    }

    static std::string percentEncoded(std::string_view path)
    {
        static constexpr char digits[] = "0123456789ABCDEF";
        std::string text;
        for (char const character : path) {
            auto const byte = static_cast<unsigned char>(character);
            if ((byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9')
                || byte == '/' || byte == '.')
                text += character;
            else
                text += { '%', digits[byte >> 4], digits[byte & 0xF] };
        }
        return text;
    }

    CallRecord& calls_;
};

}
