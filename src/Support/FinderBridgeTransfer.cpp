#include "Support/FinderBridge.h"

#include "Platform/Platform.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace marrowick {

namespace {

/// The names tried for an item in a folder: "Report.pdf", "Report 2.pdf", "Report 3.pdf". The rule looks at nothing but the
/// name, so that a folder "Archive.old" becomes "Archive 2.old".
class CandidateNames {
public:
    CandidateNames(FileURL const& item, std::string_view suffix)
        : base_(item.nameWithoutExtension())
    {
        base_ += suffix;
        if (auto const extension = item.pathExtension(); !extension.empty())
            extension_ = "." + std::string(extension);
    }

    std::string name(std::uint64_t number) const
    {
        return (number == 1 ? base_ : base_ + " " + std::to_string(number)) + extension_;
    }

    /// The number from 2 on by which `name` is one of them.
    std::optional<std::uint64_t> numberOf(std::string_view name) const
    {
        if (name.size() < base_.size() + extension_.size() + 2 || name[base_.size()] != ' ' || !name.starts_with(base_)
            || !name.ends_with(extension_))
            return std::nullopt;
        auto const* const begin = name.data() + base_.size() + 1;
        auto const* const end = name.data() + name.size() - extension_.size();
        std::uint64_t number = 0;
        auto const parsed = std::from_chars(begin, end, number);
        if (parsed.ec != std::errc() || parsed.ptr != end || *begin == '0' || number < 2)
            return std::nullopt;
        return number;
    }

private:
    std::string base_;
    std::string extension_;
};

/// Listing a folder costs as much as asking for this many names one by one.
constexpr std::uint64_t namesWorthAListing = 16;

/// The first number from `first` on whose name a listing of the folder does not hold; `first` where it cannot be listed.
std::uint64_t firstUnlisted(FileURL const& folder, CandidateNames const& candidates, std::uint64_t first)
{
    std::vector<std::uint64_t> numbers;
    static_cast<void>(platform().fileManager->visitNames(folder, [&](std::string_view name) {
        if (auto const number = candidates.numberOf(name); number && *number >= first)
            numbers.push_back(*number - first);
    }));
    // So many names cannot fill more than the places before the one after them.
    std::vector<unsigned char> isTaken(numbers.size() + 1, 0);
    for (auto const number : numbers) {
        if (number < isTaken.size())
            isTaken[number] = 1;
    }
    auto const free = std::find(isTaken.begin(), isTaken.end(), 0);
    return first + static_cast<std::uint64_t>(free - isTaken.begin());
}

}

FileURL FinderBridge::uniqueDestination(
    FileURL const& item, FileURL const& folder, std::string_view suffix, std::uint64_t& number)
{
    CandidateNames const candidates(item, suffix);
    for (std::uint64_t tried = 0;; ++number, ++tried) {
        if (tried == namesWorthAListing)
            number = firstUnlisted(folder, candidates, number);
        auto candidate = folder.appendingPathComponent(candidates.name(number));
        if (!platform().fileManager->isNameTaken(candidate))
            return candidate;
    }
}

template<typename TransferTo>
Result<void> FinderBridge::withUniqueDestination(
    FileURL const& item, FileURL const& folder, std::string_view suffix, TransferTo transferTo)
{
    for (std::uint64_t number = 1;; ++number) {
        auto outcome = transferTo(uniqueDestination(item, folder, suffix, number));
        if (outcome || outcome.error().kind != ErrorKind::alreadyExists)
            return outcome;
    }
}

Result<void> FinderBridge::moveItem(FileURL const& item, FileURL const& folder)
{
    return withUniqueDestination(
        item, folder, "", [&](FileURL const& free) { return platform().fileTransfer->moveItem(item, free); });
}

Result<void> FinderBridge::copyItem(FileURL const& item, FileURL const& folder)
{
    return withUniqueDestination(
        item, folder, "", [&](FileURL const& free) { return platform().fileTransfer->copyItem(item, free); });
}

Result<void> FinderBridge::aliasItem(FileURL const& item, FileURL const& folder)
{
    return withUniqueDestination(
        item, folder, " alias", [&](FileURL const& free) { return platform().fileTransfer->createAlias(free, item); });
}

}
