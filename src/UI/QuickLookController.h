#pragma once

#include "Platform/FileURL.h"
#include "Platform/PreviewPanel.h"

#include <cstddef>
#include <optional>

namespace marrowick {

/// The preview of one item, the one that was asked for last. Main thread only.
class QuickLookController final : public PreviewPanelDataSource {
public:
    static QuickLookController& shared();

    ~QuickLookController() override;

    void preview(FileURL const& url);

    std::size_t numberOfPreviewItems(PreviewPanel const& panel) const override;
    std::optional<FileURL> previewPanel(PreviewPanel const& panel, std::size_t previewItemAt) const override;

private:
    std::optional<FileURL> currentURL_;
    /// The panel that asks this.
    PreviewPanel* panel_ = nullptr;
};

}
