#include "Support/SnapshotWalk.h"

#include "Support/Characters.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

namespace {

/// One way down a tree. The names and the order of a directory stand behind those of the ones above, in memory that is used
/// again for the next.
class Descent {
public:
    Descent(FileManager const& fileManager, Collation const& collation, int& budget)
        : fileManager_(fileManager)
        , prepared_(collation.prepare())
        , budget_(budget)
    {
    }

    void addFolders(FileURL const& of, int depth, SnapshotNodes& nodes)
    {
        path_.assign(of.path(), 0, of.path().find_last_not_of('/') + 1);
        addFolders(*fileManager_.walk(of), depth, nodes);
    }

private:
    /// `path_` is that of `of`, without a slash at its end.
    void addFolders(WalkedDirectory const& of, int depth, SnapshotNodes& nodes)
    {
        auto const firstName = names_.size();
        // Of a directory that breaks off nothing is shown.
        if (!of.addNamesOfFolders(names_))
            names_.shrink(firstName);
        auto const begin = order_.size();
        appendOrder(firstName);
        auto const end = order_.size();
        nodes.reserve(std::min(end - begin, static_cast<std::size_t>(budget_)));
        auto const pathSize = path_.size();
        path_ += '/';
        for (auto position = begin; position < end && budget_ > 0; ++position) {
            --budget_;
            auto const name = names_[firstName + order_[position]];
            path_.resize(pathSize + 1);
            path_ += name;
            auto& node = nodes.emplace_back(name, path_);
            if (depth < SnapshotWalk::deepest && budget_ > 0)
                addFolders(*of.folder(name), depth + 1, node.children);
        }
        order_.resize(begin);
        names_.shrink(firstName);
    }

    /// Appends which of the names from `firstName` on come first in the user's order, as many as one directory may show;
    /// equal names keep the listing's order. What is not UTF-8 is left out.
    void appendOrder(std::size_t firstName)
    {
        texts_.clear();
        auto const begin = static_cast<std::ptrdiff_t>(order_.size());
        for (auto index = firstName; index < names_.size(); ++index) {
            texts_.push_back(names_[index]);
            if (isValidUTF8(texts_.back()))
                order_.push_back(index - firstName);
        }
        prepared_->assign(texts_);
        auto const first = order_.begin() + begin;
        if (order_.end() - first > static_cast<std::ptrdiff_t>(SnapshotWalk::mostChildren)) {
            auto const last = first + static_cast<std::ptrdiff_t>(SnapshotWalk::mostChildren);
            std::nth_element(first, last, order_.end(), [this](std::size_t a, std::size_t b) {
                auto const comparison = prepared_->compare(a, b);
                return comparison != 0 ? comparison < 0 : a < b;
            });
            order_.erase(last, order_.end());
        }
        prepared_->sort(std::span(first, order_.end()));
    }

    FileManager const& fileManager_;
    std::unique_ptr<PreparedTexts> prepared_;
    int& budget_;
    std::string path_;
    NameList names_;
    std::vector<std::size_t> order_;
    std::vector<std::string_view> texts_;
};

}

SnapshotNodes SnapshotWalk::roots(std::vector<TopLevelFolder> const& folders) const
{
    int budget = mostNodes;
    SnapshotNodes roots(memory_);
    roots.reserve(folders.size());
    for (auto const& folder : folders) {
        // A folder that is told from the working directory on is no destination.
        bool const isAbsolute = folder.url.path().starts_with('/');
        if (!isAbsolute || !isValidUTF8(folder.name) || !isValidUTF8(folder.url.path()))
            continue;
        addSubfolders(folder.url, 1, budget, roots.emplace_back(folder.name, folder.url.path()).children);
    }
    return roots;
}

SnapshotNodes SnapshotWalk::subfolders(FileURL const& of, int depth, int& budget) const
{
    SnapshotNodes nodes(memory_);
    addSubfolders(of, depth, budget, nodes);
    return nodes;
}

void SnapshotWalk::addSubfolders(FileURL const& of, int depth, int& budget, SnapshotNodes& nodes) const
{
    if (depth <= deepest && budget >= 1)
        Descent(fileManager_, collation_, budget).addFolders(of, depth, nodes);
}

}
