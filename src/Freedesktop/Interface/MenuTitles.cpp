#include "Freedesktop/Interface/MenuTitles.h"

#include "Freedesktop/Interface/Conversions.h"

namespace marrowick {

namespace {

/// Whether the title fits for certain, told without laying it out, which takes about as long as all the rest that is
/// done for an entry. The widths of ASCII characters are at hand, and kerning does not add an eighth to them; letters of
/// other scripts can be as wide as a word.
bool isSurelyNarrow(QString const& title, QFontMetrics const& metrics, int width)
{
    int sum = 0;
    for (QChar const character : title) {
        if (character.unicode() > 0x7E || sum > width)
            return false;
        sum += metrics.horizontalAdvance(character);
    }
    return sum + sum / 8 <= width;
}

/// Measuring takes time in proportion to the length, and the middle is not going to be seen.
QString withoutDistantMiddle(QString const& title)
{
    constexpr qsizetype keptEnd = 300;
    if (title.size() <= 2 * keptEnd)
        return title;
    return title.left(keptEnd) + title.right(keptEnd);
}

}

QString wholeTitle(MenuItem const& item)
{
    return displayText(item.title);
}

QString shownTitle(MenuItem const& item, QFontMetrics const& metrics, int width)
{
    QString const title = wholeTitle(item);
    if (isSurelyNarrow(title, metrics, width))
        return title;
    return metrics.elidedText(withoutDistantMiddle(title), Qt::ElideMiddle, width);
}

QString shortcutText(MenuItem const& item)
{
    if (item.keyEquivalent.empty())
        return {};
    return QStringLiteral("Super+") + displayText(item.keyEquivalent).toUpper();
}

QString actionText(MenuItem const& item, QFontMetrics const& metrics, int width)
{
    QString text = withoutMnemonics(shownTitle(item, metrics, width));
    if (QString const shortcut = shortcutText(item); !shortcut.isEmpty())
        text += QLatin1Char('\t') + withoutMnemonics(shortcut);
    return text;
}

}
