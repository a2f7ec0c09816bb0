#pragma once

#include "Platform/FileURL.h"
#include "Support/AppConditional.h"
#include "Support/SuffixCodes.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace marrowick {

/// What an entry of a menu is. A file, a folder and a template folder carry their location, the other kinds nothing.
class MenuNodeKind {
public:
    enum class Case : std::uint8_t {
        file,
        folder,
        copyTemplateFolder,
        divider,
        allAppsSubmenu,
        desktopSubmenu,
        processesSubmenu,
        prefPanesSubmenu,
        recentItemsSubmenu,
    };

    /// An ordinary file, an application, an alias or a script.
    static MenuNodeKind file(FileURL url) { return { Case::file, std::move(url) }; }
    /// A submenu of the folder's contents.
    static MenuNodeKind folder(FileURL url) { return { Case::folder, std::move(url) }; }
    /// A submenu of templates: choosing one copies it into the folder of the file manager's front window.
    static MenuNodeKind copyTemplateFolder(FileURL url) { return { Case::copyTemplateFolder, std::move(url) }; }
    /// A line between entries.
    static MenuNodeKind divider() { return { Case::divider, {} }; }
    /// The places of the generated submenus.
    static MenuNodeKind allAppsSubmenu() { return { Case::allAppsSubmenu, {} }; }
    static MenuNodeKind desktopSubmenu() { return { Case::desktopSubmenu, {} }; }
    static MenuNodeKind processesSubmenu() { return { Case::processesSubmenu, {} }; }
    static MenuNodeKind prefPanesSubmenu() { return { Case::prefPanesSubmenu, {} }; }
    static MenuNodeKind recentItemsSubmenu() { return { Case::recentItemsSubmenu, {} }; }

    Case value() const { return case_; }
    bool is(Case value) const { return case_ == value; }

    /// Whether the kind carries a location.
    bool hasURL() const { return case_ <= Case::copyTemplateFolder; }

    /// Null for the kinds that carry none.
    FileURL const* url() const { return hasURL() ? &url_ : nullptr; }

    friend bool operator==(MenuNodeKind const&, MenuNodeKind const&) = default;

private:
    MenuNodeKind(Case value, FileURL url)
        : case_(value)
        , url_(std::move(url))
    {
    }

    Case case_;
    FileURL url_;
};

/// One entry of a menu tree, read from the disk for one filling of a menu.
struct MenuNode {
    MenuNodeKind kind;
    /// The title; where it is empty the menu shows a default one.
    std::string displayName;
    SuffixCodes codes;
    /// When present, the application condition that the entry has met.
    std::optional<AppConditional> appConditional;
};

}
