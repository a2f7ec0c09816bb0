#pragma once

#include "Platform/Alerts.h"
#include "Platform/FileURL.h"
#include "Support/MoveRequest.h"
#include "Support/TransferMode.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marrowick {

/// What to do with one item of a request.
enum class ItemVerdict {
    transfer,
    /// It is in the folder already.
    skip,
    /// It would go into itself.
    refuse,
};

/// The decisions about requests, as functions of values.
class RequestRules {
public:
    /// Whether `op` is one that a request may name.
    static bool isAllowed(std::string_view op);

    /// How items are transferred; absent for "ask".
    static std::optional<TransferMode> mode(std::string_view op);

    /// The name of `mode` in requests and reports.
    static std::string_view operation(TransferMode mode);

    /// Asks what to do with the items of `request`, and which answer means what; absent for "Cancel".
    static Alert question(MoveRequest const& request, FileURL const& destination);
    static std::optional<TransferMode> mode(std::size_t answer);

    /// Judges an item that exists by nothing but the two locations.
    static ItemVerdict verdict(FileURL const& item, FileURL const& destination, TransferMode mode);

    static std::string refusal(FileURL const& item);
    static std::string failure(FileURL const& item, std::string_view reason);

    /// Tells of everything that could not be done for one request.
    static Alert report(TransferMode mode, std::vector<std::string> const& lines);
};

}
