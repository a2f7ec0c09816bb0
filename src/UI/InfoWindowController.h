#pragma once

#include "Platform/FileURL.h"
#include "Platform/Image.h"
#include "Platform/InfoPanel.h"

#include <memory>
#include <optional>
#include <string>

namespace marrowick {

/// The program's own Info window on one item. Main thread only.
class InfoWindowController {
public:
    static InfoWindowController& shared();

    InfoWindowController();

    /// Fills the window with what there is to say about `url`, and shows it.
    void show(FileURL const& url);

    /// Size or number of items, kind and date, as far as they are known.
    static std::string detailText(FileURL const& url);

    /// The item shown; absent before the first.
    std::optional<FileURL> const& currentURL() const { return currentURL_; }
    /// Kept for a view of the file's bytes; there is none.
    bool showingHexDump() const { return showingHexDump_; }

private:
    InfoPanelHandlers handlers();
    void loadPreview(FileURL const& url);

    void trashTapped();
    void revealTapped();
    void getInfoTapped();
    void dismissTapped();
    void iconPressed(int clickCount);
    void iconDoubleClicked();
    void pathDoubleClicked();

    std::optional<FileURL> currentURL_;
    bool showingHexDump_ = false;
    std::unique_ptr<InfoPanel> panel_;
    /// What comes late looks whether this is still there.
    std::shared_ptr<InfoWindowController*> self_;
};

}
