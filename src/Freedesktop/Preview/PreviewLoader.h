#pragma once

#include "Freedesktop/Preview/PreviewContent.h"
#include "Platform/FileURL.h"

#include <QSize>

#include <memory>
#include <string>

namespace marrowick {

struct PreviewRequest {
    FileURL url;
    /// In pixels of the screen.
    QSize room;
    /// Pixels per point.
    double scale = 1;
    /// An ICU locale.
    std::string dateLocale;
};

/// Finds out what the item is and reads as much of it as is shown. The content decides, not the name. Any thread; takes
/// bounded memory, and ends soon after `limit` is reached where the libraries let it.
PreviewContent loadPreview(PreviewRequest const& request, std::shared_ptr<LoadLimit const> const& limit);

}
