#include "Support/ExchangeCoding.h"

#include "Support/Characters.h"
#include "Support/InternetDate.h"
#include "Support/RecordReader.h"

#include <algorithm>
#include <array>
#include <exception>

#include <boost/json/basic_parser_impl.hpp>
#include <boost/json/serializer.hpp>

namespace marrowick {

namespace {

namespace json = boost::json;

constexpr std::size_t deepestNesting = 128;

constexpr RecordShape snapshotShape { "generated", {}, "roots" };
constexpr RecordShape requestShape { "op", "dest", "sources", true };

/// Made for files that anybody may have written: what it keeps is no more than the record holds.
std::optional<Record> decode(std::string_view bytes, RecordShape const& shape)
{
    json::parse_options options;
    options.max_depth = deepestNesting;
    try {
        json::basic_parser<RecordReader> parser(options, shape);
        json::error_code error;
        auto const count = parser.write_some(false, bytes.data(), bytes.size(), error);
        return error || count != bytes.size() ? std::nullopt : parser.handler().take();
    } catch (std::exception const&) {
        return std::nullopt;
    }
}

/// Appends a document piece by piece.
class Writer {
public:
    explicit Writer(std::string& bytes)
        : bytes_(bytes)
    {
    }

    /// False where a text is not UTF-8.
    bool append(Snapshot const& snapshot, std::string_view generated)
    {
        bytes_ += R"({"generated":)";
        if (!append(generated))
            return false;
        bytes_ += R"(,"roots":)";
        if (!append(snapshot.roots))
            return false;
        bytes_ += '}';
        return true;
    }

    bool append(MoveRequest const& request)
    {
        bytes_ += R"({"op":)";
        if (!append(request.op))
            return false;
        bytes_ += R"(,"dest":)";
        if (!append(request.dest))
            return false;
        bytes_ += R"(,"sources":[)";
        for (auto const& source : request.sources) {
            if (&source != &request.sources.front())
                bytes_ += ',';
            if (!append(source))
                return false;
        }
        bytes_ += "]}";
        return true;
    }

private:
    bool append(SnapshotNodes const& nodes)
    {
        bytes_ += '[';
        for (auto const& node : nodes) {
            if (&node != &nodes.front())
                bytes_ += ',';
            if (!append(node))
                return false;
        }
        bytes_ += ']';
        return true;
    }

    bool append(SnapshotNode const& node)
    {
        bytes_ += R"({"name":)";
        if (!append(node.name))
            return false;
        bytes_ += R"(,"path":)";
        if (!append(node.path))
            return false;
        bytes_ += R"(,"children":)";
        if (!append(node.children))
            return false;
        bytes_ += '}';
        return true;
    }

    bool append(std::string_view text)
    {
        if (!isValidUTF8(text))
            return false;
        serializer_.reset(json::string_view(text.data(), text.size()));
        std::array<char, 1024> buffer;
        while (!serializer_.done()) {
            auto const piece = serializer_.read(buffer.data(), buffer.size());
            appendWithEscapedSlashes({ piece.data(), piece.size() });
        }
        return true;
    }

    void appendWithEscapedSlashes(std::string_view piece)
    {
        for (std::size_t begin = 0; begin < piece.size();) {
            auto const slash = std::min(piece.find('/', begin), piece.size());
            bytes_.append(piece, begin, slash - begin);
            if (slash < piece.size())
                bytes_ += "\\/";
            begin = slash + 1;
        }
    }

    std::string& bytes_;
    json::serializer serializer_;
};

}

std::optional<std::string> encode(Snapshot const& snapshot)
{
    auto const generated = internetDateText(snapshot.generated);
    if (!generated)
        return std::nullopt;
    try {
        std::string bytes;
        return Writer(bytes).append(snapshot, *generated) ? std::optional(std::move(bytes)) : std::nullopt;
    } catch (std::exception const&) {
        return std::nullopt;
    }
}

std::optional<std::string> encode(MoveRequest const& request)
{
    try {
        std::string bytes;
        return Writer(bytes).append(request) ? std::optional(std::move(bytes)) : std::nullopt;
    } catch (std::exception const&) {
        return std::nullopt;
    }
}

std::optional<Snapshot> decodeSnapshot(std::string_view bytes)
{
    auto record = decode(bytes, snapshotShape);
    auto const generated = record && record->first ? dateFromInternetText(*record->first) : std::nullopt;
    if (!generated || !record->nodes)
        return std::nullopt;
    return Snapshot { *generated, std::move(*record->nodes) };
}

std::optional<MoveRequest> decodeMoveRequest(std::string_view bytes)
{
    auto record = decode(bytes, requestShape);
    if (!record || !record->first || !record->second || !record->texts)
        return std::nullopt;
    return MoveRequest { std::move(*record->first), std::move(*record->second), std::move(*record->texts) };
}

}
