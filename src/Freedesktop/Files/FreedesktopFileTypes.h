#pragma once

#include "Platform/FileTypes.h"

namespace marrowick {

/// The types of the shared MIME database, by their names.
class FreedesktopFileTypes final : public FileTypes {
public:
    std::optional<FileType> type(FileURL const& url) const override;
    bool isText(std::string_view pathExtension) const override;
};

}
