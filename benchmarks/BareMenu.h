#pragma once

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

/// Fills a menu with the entries as any program of the toolkit does, with the icon theme's icon for the kind of file,
/// and pops it up at the pointer.
std::shared_ptr<QMenu> popUpBareMenu(std::vector<BareEntry> const& entries);

}
