#include "BareMenu.h"

#include <QCursor>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QIcon>
#include <QMenu>
#include <QMimeDatabase>
#include <QProxyStyle>

namespace marrowick::benchmarks {

namespace {

/// Without it a menu taller than the screen breaks into columns.
class ScrollableMenus : public QProxyStyle {
public:
    int styleHint(
        StyleHint hint, QStyleOption const* option, QWidget const* widget, QStyleHintReturn* returned) const override
    {
        return hint == SH_Menu_Scrollable ? 1 : QProxyStyle::styleHint(hint, option, widget, returned);
    }
};

/// The icon for a kind of file, asked for once for each ending.
QIcon iconOf(BareEntry const& entry)
{
    static QMimeDatabase const types;
    static QHash<QString, QIcon> icons;
    auto const key = entry.isFolder ? QStringLiteral("/") : entry.extension;
    auto found = icons.find(key);
    if (found == icons.end()) {
        auto const name = entry.isFolder
            ? QStringLiteral("folder")
            : types.mimeTypeForFile("x." + entry.extension, QMimeDatabase::MatchExtension).iconName();
        found = icons.insert(key, QIcon::fromTheme(name, QIcon::fromTheme(QStringLiteral("text-x-generic"))));
    }
    return *found;
}

std::shared_ptr<QMenu> emptyMenu()
{
    static ScrollableMenus style;
    auto menu = std::make_shared<QMenu>();
    menu->setStyle(&style);
    return menu;
}

}

std::vector<BareEntry> bareEntries(std::string const& folder)
{
    std::vector<BareEntry> entries;
    auto const listing
        = QDir(QString::fromStdString(folder)).entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    for (auto const& file : listing)
        entries.push_back({ file.fileName(), file.suffix(), file.isDir() });
    return entries;
}

std::shared_ptr<QMenu> popUpBareMenu(std::vector<BareEntry> const& entries)
{
    auto menu = emptyMenu();
    for (auto const& entry : entries)
        menu->addAction(iconOf(entry), entry.title);
    menu->popup(QCursor::pos());
    return menu;
}

std::shared_ptr<QMenu> popUpBareMenu(std::vector<BareAction> const& actions)
{
    auto menu = emptyMenu();
    for (auto const& action : actions)
        menu->addAction(action.iconName.isEmpty() ? action.icon : QIcon::fromTheme(action.iconName), action.title);
    menu->popup(QCursor::pos());
    return menu;
}

}
