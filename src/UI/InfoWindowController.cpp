#include "UI/InfoWindowController.h"

#include "Platform/Platform.h"
#include "Platform/SharedObjects.h"
#include "Support/FinderBridge.h"
#include "UI/TextPreview.h"

#include <cstddef>
#include <string_view>
#include <utility>

namespace marrowick {

namespace {

constexpr int iconSize = 96;

std::string itemCount(FileURL const& folder)
{
    std::size_t count = 0;
    auto const outcome = platform().fileManager->visitNames(folder, [&](std::string_view) { ++count; });
    if (!outcome)
        count = 0;
    return std::to_string(count) + (count == 1 ? " item" : " items");
}

void append(std::string& line, std::string const& part)
{
    if (!line.empty())
        line += " • ";
    line += part;
}

}

InfoWindowController& InfoWindowController::shared()
{
    return sharedObject<InfoWindowController>();
}

InfoWindowController::InfoWindowController()
    : panel_(platform().windows->makeInfoPanel(handlers()))
    , self_(std::make_shared<InfoWindowController*>(this))
{
}

InfoPanelHandlers InfoWindowController::handlers()
{
    return {
        .buttons = {
            { "Trash", 127, [this] { trashTapped(); } },
            { "Reveal", 'r', [this] { revealTapped(); } },
            { "Get Info", 'i', [this] { getInfoTapped(); } },
            { "Dismiss", 27, [this] { dismissTapped(); } },
        },
        .iconPressed = [this](int clickCount) { iconPressed(clickCount); },
        .pathDoubleClicked = [this] { pathDoubleClicked(); },
    };
}

void InfoWindowController::show(FileURL const& url)
{
    assertMainThread();
    currentURL_ = url;
    showingHexDump_ = false;
    panel_->setName(std::string(url.lastPathComponent()));
    panel_->setPath(url.path());
    panel_->setDetail(detailText(url));
    loadPreview(url);
    panel_->show();
    platform().application->activate();
}

std::string InfoWindowController::detailText(FileURL const& url)
{
    auto const& services = platform();
    auto const values = services.fileManager->resourceValues(
        url, ResourceKey::fileSize | ResourceKey::contentModificationDate | ResourceKey::isDirectory);
    std::string line;
    if (values.isDirectory.value_or(false))
        append(line, itemCount(url));
    else if (values.fileSize)
        append(line, services.formats->fileSize(*values.fileSize));
    if (auto const type = services.fileTypes->type(url))
        append(line, type->localizedDescription.value_or(type->identifier));
    if (values.contentModificationDate)
        append(line, "Modified " + services.formats->dateAndTime(*values.contentModificationDate));
    return line;
}

void InfoWindowController::loadPreview(FileURL const& url)
{
    auto const values = platform().fileManager->resourceValues(url, ResourceKey::isDirectory);
    bool const isText = !values.isDirectory.value_or(false) && platform().fileTypes->isText(url.pathExtension());
    panel_->setPreview(isText ? std::optional(textPreview(url)) : std::nullopt);
    platform().thumbnails->generate(url, iconSize, panel_->backingScaleFactor(),
        [weakSelf = std::weak_ptr(self_), url](std::optional<Bitmap> const& picture) {
            auto const self = weakSelf.lock();
            if (picture && self && (*self)->currentURL_ == url)
                (*self)->panel_->setIcon(*picture);
        });
}

void InfoWindowController::trashTapped()
{
    if (currentURL_)
        FinderBridge::moveToTrash(*currentURL_, {});
    panel_->close();
}

void InfoWindowController::revealTapped()
{
    if (currentURL_)
        platform().workspace->activateFileViewerSelecting({ *currentURL_ });
}

void InfoWindowController::getInfoTapped()
{
    if (currentURL_)
        FinderBridge::openInformationWindow(*currentURL_);
}

void InfoWindowController::dismissTapped()
{
    panel_->close();
}

void InfoWindowController::iconPressed(int clickCount)
{
    if (clickCount == 2)
        iconDoubleClicked();
    else if (currentURL_)
        panel_->dragIcon(*currentURL_);
}

void InfoWindowController::iconDoubleClicked()
{
    if (currentURL_)
        platform().workspace->open(*currentURL_);
    panel_->close();
}

void InfoWindowController::pathDoubleClicked()
{
    if (currentURL_)
        platform().pasteboard->setText(currentURL_->path());
    panel_->close();
}

}
