#include "Support/SnapshotWalk.h"

#include "Support/Characters.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <numeric>
#include <span>
#include <string_view>
#include <utility>

namespace marrowick {

namespace {

std::string pathOf(std::string const& folder, std::string const& name)
{
    std::string path;
    path.reserve(folder.size() + 1 + name.size());
    path.append(folder).append(1, '/').append(name);
    return path;
}

/// One way down a tree, which orders each directory in the memory of those before.
class Descent {
public:
    Descent(FileManager const& fileManager, Collation const& collation, int& budget)
        : fileManager_(fileManager)
        , prepared_(collation.prepare())
        , budget_(budget)
    {
    }

    std::vector<SnapshotNode> nodes(FileURL const& of, int depth)
    {
        return nodes(*fileManager_.walk(of), of.path().substr(0, of.path().find_last_not_of('/') + 1), depth);
    }

private:
    /// `path` is that of `of`, without a slash at its end.
    std::vector<SnapshotNode> nodes(WalkedDirectory const& of, std::string const& path, int depth)
    {
        auto listing = of.namesOfFolders();
        if (!listing)
            return {};
        auto names = std::move(listing).value();
        std::erase_if(names, [](std::string const& name) { return !isValidUTF8(name); });

        // The directories below put their order behind this one's.
        auto const begin = order_.size();
        auto const end = begin + appendOrder(names);
        std::vector<SnapshotNode> nodes;
        nodes.reserve(std::min(end - begin, static_cast<std::size_t>(budget_)));
        for (auto position = begin; position < end && budget_ > 0; ++position) {
            --budget_;
            auto& name = names[order_[position]];
            auto whole = pathOf(path, name);
            nodes.push_back({ std::move(name), std::move(whole), {} });
            auto& node = nodes.back();
            if (depth < SnapshotWalk::deepest && budget_ > 0)
                node.children = this->nodes(*of.folder(node.name), node.path, depth + 1);
        }
        order_.resize(begin);
        return nodes;
    }

    /// Appends the positions of the first of `names` in the user's order, as many as one directory may show; equal names
    /// keep the listing's order.
    std::size_t appendOrder(std::vector<std::string> const& names)
    {
        texts_.assign(names.begin(), names.end());
        prepared_->assign(texts_);
        auto const size = order_.size();
        order_.resize(size + names.size());
        auto const begin = order_.begin() + static_cast<std::ptrdiff_t>(size);
        std::iota(begin, order_.end(), std::size_t { 0 });
        if (names.size() > SnapshotWalk::mostChildren) {
            auto const last = begin + static_cast<std::ptrdiff_t>(SnapshotWalk::mostChildren);
            std::nth_element(begin, last, order_.end(), [this](std::size_t a, std::size_t b) {
                auto const comparison = prepared_->compare(a, b);
                return comparison != 0 ? comparison < 0 : a < b;
            });
            order_.erase(last, order_.end());
        }
        prepared_->sort(std::span(begin, order_.end()));
        return order_.size() - size;
    }

    FileManager const& fileManager_;
    std::unique_ptr<PreparedTexts> prepared_;
    int& budget_;
    std::vector<std::string_view> texts_;
    std::vector<std::size_t> order_;
};

}

std::vector<SnapshotNode> SnapshotWalk::roots(std::vector<TopLevelFolder> const& folders) const
{
    int budget = mostNodes;
    std::vector<SnapshotNode> roots;
    for (auto const& folder : folders) {
        // A folder that is told from the working directory on is no destination.
        bool const isAbsolute = folder.url.path().starts_with('/');
        if (isAbsolute && isValidUTF8(folder.name) && isValidUTF8(folder.url.path()))
            roots.push_back({ folder.name, folder.url.path(), subfolders(folder.url, 1, budget) });
    }
    return roots;
}

std::vector<SnapshotNode> SnapshotWalk::subfolders(FileURL const& of, int depth, int& budget) const
{
    if (depth > deepest || budget < 1)
        return {};
    return Descent(fileManager_, collation_, budget).nodes(of, depth);
}

}
