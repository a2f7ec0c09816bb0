#pragma once

#include <QCollator>
#include <QFileInfo>

#include <string>
#include <utility>
#include <vector>

namespace marrowick::benchmarks {

/// What a program gets by asking the toolkit: `QDir::entryInfoList`, sorted with a `QCollator` by number and without
/// regard to case.
QFileInfoList scanComparing(std::string const& folder);

/// The same with a `QCollatorSortKey` made once for each name.
std::vector<std::pair<QCollatorSortKey, QFileInfo>> scanBySortKeys(std::string const& folder);

}
