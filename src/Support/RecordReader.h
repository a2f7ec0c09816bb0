#pragma once

#include "Support/Snapshot.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <boost/json/error.hpp>
#include <boost/json/string_view.hpp>

namespace marrowick {

/// Every object of the exchange has up to two texts and one list, of texts or of the objects of nodes.
struct RecordShape {
    std::string_view firstText;
    std::string_view secondText;
    std::string_view list;
    bool isListOfTexts = false;
};

inline constexpr RecordShape nodeShape { "name", "path", "children" };

/// What stands in an object; absent what is missing or of another type.
struct Record {
    std::optional<std::string> first;
    std::optional<std::string> second;
    std::optional<std::vector<std::string>> texts;
    std::optional<SnapshotNodes> nodes;
};

/// Hears a document from Boost.JSON's parser, which names the functions, and keeps nothing but what the record has room for.
/// A value that stands under a key again takes the place of the one before.
class RecordReader {
public:
    explicit RecordReader(RecordShape const& document)
        : document_(document)
    {
    }

    /// The record that the document was; absent where it was no object.
    std::optional<Record> take() { return std::move(read_); }

    static constexpr std::size_t max_object_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_array_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_key_size = static_cast<std::size_t>(-1);
    static constexpr std::size_t max_string_size = static_cast<std::size_t>(-1);

    using Code = boost::json::error_code;
    using Text = boost::json::string_view;

    bool on_document_begin(Code&) { return true; }
    bool on_document_end(Code&) { return true; }
    bool on_object_begin(Code& error);
    bool on_object_end(std::size_t count, Code& error);
    bool on_array_begin(Code& error);
    bool on_array_end(std::size_t count, Code& error);
    bool on_key_part(Text part, std::size_t size, Code& error);
    bool on_key(Text part, std::size_t size, Code& error);
    bool on_string_part(Text part, std::size_t size, Code& error);
    bool on_string(Text part, std::size_t size, Code& error);
    bool on_number_part(Text, Code&) { return true; }
    bool on_int64(std::int64_t, Text, Code&) { return otherValue(); }
    bool on_uint64(std::uint64_t, Text, Code&) { return otherValue(); }
    bool on_double(double, Text, Code&) { return otherValue(); }
    bool on_bool(bool, Code&) { return otherValue(); }
    bool on_null(Code&) { return otherValue(); }
    bool on_comment_part(Text, Code&) { return true; }
    bool on_comment(Text, Code&) { return true; }

private:
    enum class Member {
        none,
        first,
        second,
        list,
    };

    /// An object that is not read to its end.
    struct Open {
        RecordShape const* shape;
        Record record;
        /// What the next value is for.
        Member member = Member::none;
        bool isInList = false;
    };

    Member memberOf(std::string_view key) const;
    bool takesText() const;
    bool takesNode() const;
    void takeText(std::string text);
    /// A value of a type that is of no use where it stands.
    bool otherValue();
    bool skipContainer();

    RecordShape const& document_;
    std::optional<Record> read_;
    /// From the document inwards.
    std::vector<Open> open_;
    /// How many objects and arrays are open within a value that the record has no room for, that one included.
    std::size_t skipped_ = 0;
    std::string key_;
    std::string text_;
};

}
