#include "Freedesktop/Preview/TextContent.h"

#include <QStringDecoder>

#include <algorithm>

namespace marrowick {

namespace {

constexpr char16_t replacement = u'\uFFFD';
constexpr char16_t controlPictures = 0x2400;
constexpr char16_t deletePicture = u'\u2421';
constexpr char16_t lineEndPicture = u'\u2424';
/// Of the characters of a text, one in so many may be a control character.
constexpr qsizetype rarityOfControls = 8;

bool isCutOffCharacter(QByteArray const& bytes, qsizetype start)
{
    auto const lead = static_cast<unsigned char>(bytes[start]);
    qsizetype const length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    return bytes.size() - start < length;
}

/// Without the beginning of a character at the end.
QByteArray withoutCutOffEnd(QByteArray const& bytes)
{
    constexpr qsizetype longestCharacter = 4;
    for (qsizetype back = 1; back < longestCharacter && back <= bytes.size(); ++back) {
        auto const start = bytes.size() - back;
        bool const isContinuation = (static_cast<unsigned char>(bytes[start]) & 0xC0) == 0x80;
        if (!isContinuation)
            return isCutOffCharacter(bytes, start) ? bytes.first(start) : bytes;
    }
    return bytes;
}

std::optional<QString> decoded(QByteArray const& bytes, QStringConverter::Encoding encoding)
{
    // Half a character at the end is an error, too.
    QStringDecoder decoder(encoding, QStringConverter::Flag::Stateless);
    QString text = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

QString decoded(QByteArray const& bytes, TextEnd end)
{
    auto const utf8 = end == TextEnd::cutOff ? withoutCutOffEnd(bytes) : bytes;
    if (auto text = decoded(utf8, QStringConverter::Utf8))
        return *std::move(text);
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        // Half a character at the end shows as one that is damaged.
        QStringDecoder decoder(QStringConverter::Utf16);
        return decoder.decode(bytes.first(bytes.size() & ~qsizetype(1)));
    }
    return QString::fromLatin1(bytes);
}

bool isControl(char16_t c)
{
    bool const isCommon = c == u'\t' || c == u'\n' || c == u'\r' || c == u'\f' || c == u'\x1B' || c == u'\b';
    return !isCommon && (c < 0x20 || (c >= 0x7F && c <= 0x9F));
}

char16_t displayed(char16_t c)
{
    if (c == u'\t' || c == u'\n')
        return c;
    if (c < 0x20)
        return static_cast<char16_t>(controlPictures + c);
    if (c == 0x7F)
        return deletePicture;
    if (c == 0x2028 || c == 0x2029)
        return lineEndPicture;
    // Embeddings, overrides and isolates show a text in another order than it has; the last are the toolkit's own marks.
    if ((c >= 0x80 && c <= 0x9F) || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069)
        || (c >= 0xFDD0 && c <= 0xFDEF))
        return replacement;
    return c;
}

}

std::optional<QString> textFrom(QByteArray const& bytes, TextEnd end)
{
    QString text = decoded(bytes, end);
    auto const controls = std::count_if(text.cbegin(), text.cend(), [](QChar c) { return isControl(c.unicode()); });
    if (controls * rarityOfControls > text.size())
        return std::nullopt;
    text.replace(QLatin1String("\r\n"), QLatin1String("\n")).replace(u'\r', u'\n');
    std::transform(text.begin(), text.end(), text.begin(), [](QChar c) { return QChar(displayed(c.unicode())); });
    return text;
}

QString withShortLines(QString const& text, qsizetype longest)
{
    QString lines;
    lines.reserve(text.size() + text.size() / longest);
    qsizetype length = 0;
    for (auto const c : text) {
        if (c == u'\n') {
            length = 0;
        } else if (++length > longest && !c.isLowSurrogate() && !c.isMark()) {
            lines += u'\n';
            length = 1;
        }
        lines += c;
    }
    return lines;
}

}
