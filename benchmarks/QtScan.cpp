#include "QtScan.h"

#include <QDir>
#include <QLocale>

#include <algorithm>

namespace marrowick::benchmarks {

namespace {

QFileInfoList listing(std::string const& folder)
{
    return QDir(QString::fromStdString(folder))
        .entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDir::NoSort);
}

QCollator const& collator()
{
    static auto const made = [] {
        QCollator collator(QLocale(QLocale::English, QLocale::UnitedStates));
        collator.setNumericMode(true);
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        return collator;
    }();
    return made;
}

}

QFileInfoList scanComparing(std::string const& folder)
{
    auto entries = listing(folder);
    std::sort(entries.begin(), entries.end(),
        [](QFileInfo const& a, QFileInfo const& b) { return collator()(a.fileName(), b.fileName()); });
    return entries;
}

std::vector<std::pair<QCollatorSortKey, QFileInfo>> scanBySortKeys(std::string const& folder)
{
    std::vector<std::pair<QCollatorSortKey, QFileInfo>> entries;
    for (auto const& entry : listing(folder))
        entries.emplace_back(collator().sortKey(entry.fileName()), entry);
    std::sort(entries.begin(), entries.end(), [](auto const& a, auto const& b) { return a.first < b.first; });
    return entries;
}

}
