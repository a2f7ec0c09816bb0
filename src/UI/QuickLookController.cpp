#include "UI/QuickLookController.h"

#include "Platform/Platform.h"
#include "Platform/SharedObjects.h"

namespace marrowick {

QuickLookController& QuickLookController::shared()
{
    return sharedObject<QuickLookController>();
}

QuickLookController::~QuickLookController()
{
    if (panel_)
        panel_->setDataSource(nullptr);
}

void QuickLookController::preview(FileURL const& url)
{
    assertMainThread();
    currentURL_ = url;
    panel_ = platform().windows->previewPanel();
    if (!panel_)
        return;
    panel_->setDataSource(this);
    panel_->makeKeyAndOrderFront();
    panel_->reloadData();
}

std::size_t QuickLookController::numberOfPreviewItems(PreviewPanel const&) const
{
    assertMainThread();
    return currentURL_ ? 1 : 0;
}

std::optional<FileURL> QuickLookController::previewPanel(PreviewPanel const&, std::size_t) const
{
    assertMainThread();
    return currentURL_;
}

}
