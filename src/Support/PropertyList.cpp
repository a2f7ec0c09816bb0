#include "Support/PropertyList.h"

#include "Support/BinaryPropertyList.h"

#include <cstddef>
#include <limits>
#include <memory>
#include <utility>

#include <expat.h>

namespace marrowick {

namespace {

using Strings = std::vector<std::string>;

/// Follows one XML document of the form plist > array > string and stops the parser at the first thing that does not
/// belong there, so that neither depth nor unknown content costs anything.
class XmlReader {
public:
    XmlReader()
        : parser_(XML_ParserCreate(nullptr))
    {
        if (!parser_)
            return;
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(
            parser_.get(),
            [](void* reader, char const* name, char const**) noexcept { self(reader).startElement(name); },
            [](void* reader, char const*) noexcept { self(reader).endElement(); });
        XML_SetCharacterDataHandler(parser_.get(), [](void* reader, char const* text, int length) noexcept {
            self(reader).characters({ text, static_cast<std::size_t>(length) });
        });
        XML_SetStartDoctypeDeclHandler(
            parser_.get(), [](void* reader, char const*, char const*, char const*, int hasInternalSubset) noexcept {
                if (hasInternalSubset)
                    self(reader).refuse();
            });
        // Where a document type is declared elsewhere the parser takes an unknown entity to be defined there and would
        // leave it out of the text.
        XML_SetSkippedEntityHandler(
            parser_.get(), [](void* reader, char const*, int) noexcept { self(reader).refuse(); });
    }

    std::optional<Strings> read(std::string_view bytes)
    {
        if (!parser_ || bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
            return std::nullopt;
        // All at once: a token that is longer than a piece would be looked at again with every piece.
        auto const status = XML_Parse(parser_.get(), bytes.data(), static_cast<int>(bytes.size()), XML_TRUE);
        if (status != XML_STATUS_OK || isRefused_ || !hasArray_)
            return std::nullopt;
        return std::move(strings_);
    }

private:
    enum class Place { document, plist, array, string };

    struct FreeParser {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    static XmlReader& self(void* reader) { return *static_cast<XmlReader*>(reader); }

    void startElement(std::string_view name)
    {
        // The parser may still deliver an event or two after it was stopped.
        if (isRefused_)
            return;
        switch (place_) {
        case Place::document:
            if (name == "plist") {
                isWrapped_ = true;
                place_ = Place::plist;
                return;
            }
            return enterArray(name);
        case Place::plist:
            return enterArray(name);
        case Place::array:
            if (name != "string")
                return refuse();
            strings_.emplace_back();
            place_ = Place::string;
            return;
        case Place::string:
            return refuse();
        }
    }

    void enterArray(std::string_view name)
    {
        if (name != "array" || hasArray_)
            return refuse();
        hasArray_ = true;
        place_ = Place::array;
    }

    void endElement()
    {
        switch (place_) {
        case Place::string:
            place_ = Place::array;
            return;
        case Place::array:
            place_ = isWrapped_ ? Place::plist : Place::document;
            return;
        case Place::plist:
        case Place::document:
            place_ = Place::document;
            return;
        }
    }

    void characters(std::string_view text)
    {
        if (isRefused_)
            return;
        if (place_ == Place::string)
            strings_.back().append(text);
        else if (text.find_first_not_of(" \t\r\n") != std::string_view::npos)
            refuse();
    }

    void refuse()
    {
        isRefused_ = true;
        XML_StopParser(parser_.get(), XML_FALSE);
    }

    std::unique_ptr<XML_ParserStruct, FreeParser> parser_;
    Strings strings_;
    Place place_ = Place::document;
    bool isWrapped_ = false;
    bool hasArray_ = false;
    bool isRefused_ = false;
};

}

std::optional<Strings> stringArrayFromPropertyList(std::string_view bytes)
{
    if (isBinaryPropertyList(bytes))
        return stringArrayFromBinaryPropertyList(bytes);
    return XmlReader().read(bytes);
}

}
