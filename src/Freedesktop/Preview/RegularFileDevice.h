#pragma once

#include "Freedesktop/Preview/LoadLimit.h"
#include "Platform/FileURL.h"

#include <QFile>

#include <memory>
#include <utility>

namespace marrowick {

/// A regular file, links followed, that libraries read by themselves. Reading fails once the limit is reached, so that
/// they end.
class RegularFileDevice final : public QFile {
public:
    explicit RegularFileDevice(std::shared_ptr<LoadLimit const> limit);

    /// False for everything that is no regular file, without waiting for it, and for a file that may not be read.
    bool openFile(FileURL const& url);

    void setLimit(std::shared_ptr<LoadLimit const> limit) { limit_ = std::move(limit); }

protected:
    qint64 readData(char* data, qint64 maxSize) override;

private:
    std::shared_ptr<LoadLimit const> limit_;
};

}
