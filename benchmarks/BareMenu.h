#pragma once

#include <QIcon>
#include <QString>

#include <memory>
#include <string>
#include <vector>

class QMenu;

namespace marrowick::benchmarks {

struct BareEntry {
    QString title;
    /// The file's name ending, empty for none.
    QString extension;
    bool isFolder = false;
};

/// The entries of a folder, sorted, ready to be put into a menu.
std::vector<BareEntry> bareEntries(std::string const& folder);

/// An entry that is ready but for its icon, where that has a name.
struct BareAction {
    QString title;
    /// The icon's name in the icon theme; empty for `icon`.
    QString iconName;
    QIcon icon;
};

/// Fills a menu with the actions, each named icon looked up by its name, and pops it up at the pointer.
std::shared_ptr<QMenu> popUpBareMenu(std::vector<BareAction> const& actions);

/// Fills a menu with the entries as any program of the toolkit does, with the icon theme's icon for the kind of file,
/// and pops it up at the pointer.
std::shared_ptr<QMenu> popUpBareMenu(std::vector<BareEntry> const& entries);

}
