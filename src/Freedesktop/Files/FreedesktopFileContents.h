#pragma once

#include "Platform/FileContents.h"

namespace marrowick {

class FreedesktopFileContents final : public FileContents {
public:
    Result<std::string> read(FileURL const& url, std::size_t limit) const override;
    Result<std::string> readBeginning(FileURL const& url, std::size_t count) const override;
    Result<std::string> readUnlessLink(FileURL const& url, std::size_t limit) const override;
    Result<void> replace(FileURL const& url, std::string_view content) const override;
};

}
