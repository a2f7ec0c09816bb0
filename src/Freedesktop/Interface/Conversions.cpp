#include "Freedesktop/Interface/Conversions.h"

namespace marrowick {

namespace {

constexpr char16_t replacement = u'\uFFFD';
constexpr char16_t nothing = u'\u200B';

char16_t displayed(char16_t c)
{
    if (c < 0x20)
        return static_cast<char16_t>(0x2400 + c);
    if (c == 0x7F)
        return u'\u2421';
    if (c >= 0x80 && c <= 0x9F)
        return replacement;

    switch (c) {
    case 0x2028: // line separator
    case 0x2029: // paragraph separator
        return u'\u2424';
    case 0x061C: // the marks turn nothing but the blank beside them
    case 0x200E:
    case 0x200F:
        return nothing;
    default:
        break;
    }
    // Embeddings, overrides and isolates show a name in another order than it has.
    if ((c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069))
        return replacement;
    return c;
}

}

QString displayText(std::string_view text)
{
    QString shown = exactText(text);
    for (qsizetype i = 0; i < shown.size(); ++i) {
        char16_t const c = shown.at(i).unicode();
        if (char16_t const better = displayed(c); better != c)
            shown[i] = QChar(better);
    }
    return shown;
}

QString displayLines(std::string_view text)
{
    QString lines;
    for (;;) {
        auto const end = text.find('\n');
        lines += displayText(text.substr(0, end));
        if (end == std::string_view::npos)
            return lines;
        lines += u'\n';
        text.remove_prefix(end + 1);
    }
}

QString withoutMnemonics(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString titleText(std::string_view text)
{
    return withoutMnemonics(displayText(text));
}

QString plainAsRichText(QString const& text)
{
    return QLatin1String("<p style=\"white-space:pre-wrap\">") + text.toHtmlEscaped() + QLatin1String("</p>");
}

QString exactText(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string utf8From(QString const& text)
{
    return text.toStdString();
}

QByteArray pathBytes(FileURL const& url)
{
    return QByteArray::fromStdString(url.path());
}

FileURL fileURLFrom(QByteArray const& pathBytes)
{
    return FileURL(pathBytes.toStdString());
}

Rect rectFrom(QRect const& rect)
{
    return { rect.x(), rect.y(), rect.width(), rect.height() };
}

Size sizeFrom(QSize const& size)
{
    return { size.width(), size.height() };
}

QPoint pointFrom(Point point)
{
    return { point.x, point.y };
}

}
