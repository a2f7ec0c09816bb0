#pragma once

#include "Platform/FileURL.h"
#include "Platform/Image.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace marrowick {

struct PushButton {
    std::string title;
    /// The character of the key that presses it: Delete is 127, Escape 27.
    char keyEquivalent = 0;
    std::function<void()> action;
};

/// What the user does in the Info window.
struct InfoPanelHandlers {
    /// In the order in which they stand.
    std::vector<PushButton> buttons;
    /// The mouse went down on the icon, for the `clickCount`th time in a row.
    std::function<void(int clickCount)> iconPressed;
    std::function<void()> pathDoubleClicked;
};

/// A small window above the others that tells about one file. It leaves open menus open and gets the keys once none is.
/// Main thread only.
class InfoPanel {
public:
    virtual ~InfoPanel() = default;

    // Texts are plain; bytes that are not UTF-8 are repaired for display.
    virtual void setName(std::string const& name) = 0;
    virtual void setDetail(std::string const& detail) = 0;
    virtual void setPath(std::string const& path) = 0;
    /// The beginning of the file's text; the place for it is hidden where there is none.
    virtual void setPreview(std::optional<std::string> const& text) = 0;
    virtual void setIcon(Bitmap const& icon) = 0;

    /// Pixels per point where the window is.
    virtual double backingScaleFactor() const = 0;

    /// Lets the user drag the icon away as the file at `url`, to be copied, linked or moved. Called from `iconPressed`;
    /// returns when the drag has ended.
    virtual void dragIcon(FileURL const& url) = 0;

    /// Puts the window into the middle of the screen, in front, with the keys.
    virtual void show() = 0;
    /// Takes it away; it can be shown again.
    virtual void close() = 0;
};

}
