#include "Freedesktop/Interface/Icons.h"

#include <QDir>
#include <QFile>
#include <QStringList>

namespace marrowick {

namespace {

/// Whether the index at `path` names folders of icons; those of mere pointers to another theme do not.
bool listsIcons(QString const& path)
{
    QFile index(path);
    if (!index.open(QIODevice::ReadOnly))
        return false;
    constexpr qint64 farEnough = 1024 * 1024;
    auto const content = '\n' + index.read(farEnough);
    auto const start = content.indexOf("\nDirectories=");
    if (start < 0)
        return false;
    auto const value = start + static_cast<qsizetype>(sizeof "\nDirectories=") - 1;
    return value < content.size() && content.at(value) != '\n';
}

/// The themes with icons for files; "hicolor" and "locolor" hold those of applications only.
QStringList installedThemes()
{
    QStringList themes;
    for (auto const& path : QIcon::themeSearchPaths()) {
        QDir const folder(path);
        for (auto const& name : folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
            bool const isForApplications = name == QLatin1String("hicolor") || name == QLatin1String("locolor");
            if (!isForApplications && listsIcons(folder.filePath(name + QLatin1String("/index.theme"))))
                themes.append(name);
        }
    }
    return themes;
}

}

void prepareIconTheme(Log& log)
{
    auto const themes = installedThemes();
    if (themes.isEmpty()) {
        log.write("Marrowick: no icon theme is installed, files are shown with plain drawings");
        return;
    }
    if (themes.contains(QIcon::fallbackThemeName()))
        return;
    for (auto const* known : { "Adwaita", "breeze", "elementary", "Papirus" }) {
        if (themes.contains(QLatin1String(known))) {
            QIcon::setFallbackThemeName(QLatin1String(known));
            return;
        }
    }
    QIcon::setFallbackThemeName(themes.first());
}

}
