#include "Freedesktop/Preview/PreviewLoader.h"

#include "Freedesktop/GLibOwners.h"
#include "Freedesktop/Preview/FileFacts.h"
#include "Freedesktop/Preview/ImageContent.h"
#include "Freedesktop/Preview/RegularFileDevice.h"
#include "Freedesktop/Preview/TextContent.h"

#include <gio/gio.h>
#include <unistd.h>

#include <string>
#include <utility>

namespace marrowick {

namespace {

using Shown = decltype(PreviewContent::shown);

constexpr qint64 mostTextBytes = 1024 * 1024;
constexpr qint64 mostSvgBytes = 4 * 1024 * 1024;
constexpr qint64 sniffedBytes = 8192;

bool isA(std::string const& type, char const* ancestor)
{
    return g_content_type_is_a(type.c_str(), ancestor);
}

std::string guessedType(char const* name, QByteArray const& beginning)
{
    GStringOwner const type(g_content_type_guess(
        name, reinterpret_cast<guchar const*>(beginning.constData()), static_cast<gsize>(beginning.size()), nullptr));
    return type ? type.get() : std::string();
}

/// What kind of content a file has, by what it begins with; its name only helps where that says nothing.
struct ContentKind {
    ContentKind(FileURL const& url, QByteArray const& beginning)
        : byContent(guessedType(nullptr, beginning))
        , byBoth(guessedType(std::string(url.lastPathComponent()).c_str(), beginning))
        , startsAsPdf(beginning.startsWith("%PDF-"))
    {
    }

    bool isPdf() const { return startsAsPdf || isA(byContent, "application/pdf"); }
    bool isSvg() const { return isA(byContent, "image/svg+xml") || isA(byBoth, "image/svg+xml"); }
    bool isImage() const { return isA(byContent, "image/*") || isA(byBoth, "image/*"); }
    bool isText() const
    {
        return isA(byContent, "text/plain")
            || (g_content_type_is_unknown(byContent.c_str()) && isA(byBoth, "text/plain"));
    }
    /// Its icon says more than its words.
    bool isApplication() const { return isA(byBoth, "application/x-desktop"); }

    std::string byContent;
    std::string byBoth;
    bool startsAsPdf;
};

Shown card(char const* note = "")
{
    return CardContent { QString::fromUtf8(note) };
}

Shown shownImage(std::variant<ImageContent, ImageFailure> result)
{
    if (auto* const image = std::get_if<ImageContent>(&result))
        return std::move(*image);
    switch (std::get<ImageFailure>(result)) {
    case ImageFailure::damaged:
        break;
    case ImageFailure::tooLarge:
        return card("The picture is too large to be shown.");
    }
    return card("The picture cannot be shown.");
}

Shown svg(RegularFileDevice& device, PreviewRequest const& request)
{
    if (device.size() > mostSvgBytes)
        return card("The drawing is too large to be shown.");
    return shownImage(drawSvg(device.read(mostSvgBytes), request.room, request.scale));
}

Shown pdf(std::unique_ptr<RegularFileDevice> device, LoadLimit const& limit)
{
    auto result = PdfFile::open(std::move(device), limit);
    if (auto* const file = std::get_if<std::shared_ptr<PdfFile>>(&result))
        return PdfContent { std::move(*file) };
    switch (std::get<PdfFailure>(result)) {
    case PdfFailure::damaged:
        break;
    case PdfFailure::locked:
        return card("The document is protected by a password.");
    }
    return card("The document is damaged.");
}

Shown text(RegularFileDevice& device)
{
    auto const bytes = device.read(mostTextBytes);
    bool const isBeginning = device.size() > bytes.size();
    auto text = textFrom(bytes, isBeginning ? TextEnd::cutOff : TextEnd::whole);
    if (!text)
        return card();
    return TextContent { *std::move(text), isBeginning };
}

Shown contentOf(PreviewRequest const& request, std::shared_ptr<LoadLimit const> const& limit)
{
    auto device = std::make_unique<RegularFileDevice>(limit);
    if (!device->openFile(request.url))
        return ::access(request.url.path().c_str(), R_OK) == 0 ? card() : card("The item cannot be read.");
    auto const beginning = device->peek(sniffedBytes);
    ContentKind const kind(request.url, beginning);
    if (beginning.isEmpty() || kind.isApplication())
        return card();
    if (kind.isPdf())
        return pdf(std::move(device), *limit);
    if (kind.isSvg())
        return svg(*device, request);
    if (kind.isImage()) {
        auto shown = shownImage(readImage(*device, request.room));
        // A name can promise a picture where there is a text.
        if (std::holds_alternative<ImageContent>(shown) || !isA(kind.byContent, "text/plain") || !device->seek(0))
            return shown;
    }
    return kind.isText() ? text(*device) : card();
}

}

PreviewContent loadPreview(PreviewRequest const& request, std::shared_ptr<LoadLimit const> const& limit)
{
    PreviewContent content { fileFacts(request.url, request.dateLocale, *limit), contentOf(request, limit) };
    if (limit->isReached() && !std::holds_alternative<PdfContent>(content.shown))
        content.shown = card("The item takes too long to be shown.");
    return content;
}

}
