#pragma once

#include "Platform/FileURL.h"

#include <cstddef>
#include <optional>

namespace marrowick {

class PreviewPanel;

/// Says what the preview shows.
class PreviewPanelDataSource {
public:
    virtual ~PreviewPanelDataSource() = default;

    virtual std::size_t numberOfPreviewItems(PreviewPanel const& panel) const = 0;
    /// Absent where there is nothing to show.
    virtual std::optional<FileURL> previewPanel(PreviewPanel const& panel, std::size_t previewItemAt) const = 0;
};

/// The desktop's preview of a file's content. Main thread only.
class PreviewPanel {
public:
    virtual ~PreviewPanel() = default;

    /// Null for none; the panel does not own it.
    virtual void setDataSource(PreviewPanelDataSource* dataSource) = 0;

    /// Shows the panel in front of everything, with the keys.
    virtual void makeKeyAndOrderFront() = 0;

    /// Asks the data source anew and shows its first item.
    virtual void reloadData() = 0;
};

}
