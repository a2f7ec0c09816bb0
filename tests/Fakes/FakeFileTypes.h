#pragma once

#include "Platform/FileTypes.h"
#include "Platform/Formats.h"
#include "Platform/Pasteboard.h"

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace marrowick {

/// Types as the test says them.
class FakeFileTypes final : public FileTypes {
public:
    std::optional<FileType> type(FileURL const& url) const override
    {
        auto const found = types.find(url);
        return found == types.end() ? std::nullopt : std::optional(found->second);
    }
    bool isText(std::string_view pathExtension) const override { return textExtensions.contains(pathExtension); }

    std::map<FileURL, FileType> types;
    std::set<std::string, std::less<>> textExtensions { "txt" };
};

/// Values written so that a test can read them back.
class FakeFormats final : public Formats {
public:
    std::string fileSize(std::uint64_t bytes) const override { return "<" + std::to_string(bytes) + " bytes>"; }
    std::string dateAndTime(FileTime time) const override
    {
        return "<" + std::to_string(std::chrono::duration_cast<std::chrono::seconds>(time.time_since_epoch()).count())
            + " s>";
    }
};

class FakePasteboard final : public Pasteboard {
public:
    void setText(std::string_view newText) override { text = newText; }

    std::optional<std::string> text;
};

}
