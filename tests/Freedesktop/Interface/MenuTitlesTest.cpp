#include "Freedesktop/Interface/MenuTitles.h"

#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/MenuSession.h"

#include <QApplication>
#include <QScreen>
#include <QTextDocument>
#include <QToolTip>

namespace marrowick {
namespace {

struct TextRow {
    std::string_view text;
    char const* shown;
};

TEST(DisplayTextTest, NothingBreaksALineHidesOrTurns)
{
    using namespace std::string_view_literals;
    TextRow const rows[] = {
        { "plain", "plain" },
        { "", "" },
        { "a & b", "a & b" },
        { "tab\there", "tab␉here" },
        { "new\nline\r", "new␊line␍" },
        { "nul\0byte"sv, "nul␀byte" },
        { "\x1b[31m", "␛[31m" },
        { "del\x7f", "del␡" },
        { "c1\xc2\x85", "c1\xEF\xBF\xBD" },
        { "para\xe2\x80\xa9graph", "para␤graph" },
        { "right\xe2\x80\xaeto left", "right\xEF\xBF\xBDto left" },
        { "isolate\xe2\x81\xa7x\xe2\x81\xa9", "isolate\xEF\xBF\xBDx\xEF\xBF\xBD" },
        { "mark\xe2\x80\x8f", "mark\xe2\x80\x8b" },
        { "broken\xff", "broken\xEF\xBF\xBD" },
        { "cut\xc3", "cut\xEF\xBF\xBD" },
        { "ünïcödé 語 🙂", "ünïcödé 語 🙂" },
    };
    for (auto const& row : rows)
        EXPECT_EQ(displayText(row.text), QString::fromUtf8(row.shown)) << row.shown;
}

TEST(DisplayTextTest, SurrogateHalvesInUtf8AreRepaired)
{
    QString const shown = displayText("b\xed\xa0\x80");
    EXPECT_TRUE(shown.startsWith(QLatin1String("b\uFFFD")) || shown.startsWith(QStringLiteral("b\uFFFD")));
    for (QChar const c : shown)
        EXPECT_FALSE(c.isSurrogate());
}

TEST(TitleTextTest, AmpersandsStandForThemselves)
{
    EXPECT_EQ(titleText("&first a & b && last&"), QStringLiteral("&&first a && b &&&& last&&"));
}

TEST(PathBytesTest, BytesThatAreNoTextStay)
{
    FileURL const url("/folder/a\xff\xfe");
    EXPECT_EQ(pathBytes(url), QByteArray("/folder/a\xff\xfe"));
    EXPECT_EQ(fileURLFrom(pathBytes(url)), url);
}

class MenuTitlesTest : public MenuSession {
protected:
    QString action(std::string title, std::string key = {})
    {
        return actionText(
            *MenuItem::make(std::move(title), {}, std::move(key)), QFontMetrics(QApplication::font()), 300);
    }
};

TEST_F(MenuTitlesTest, KeyEquivalentsStandInAColumnOfTheirOwn)
{
    EXPECT_EQ(action("Quit", "q"), QStringLiteral("Quit\tSuper+Q"));
    EXPECT_EQ(action("Preferences…", ","), QStringLiteral("Preferences…\tSuper+,"));
    EXPECT_EQ(action("A", "&"), QStringLiteral("A\tSuper+&&"));
    EXPECT_EQ(action("Plain"), QStringLiteral("Plain"));
}

TEST_F(MenuTitlesTest, ATabInATitleOpensNoColumn)
{
    EXPECT_EQ(action("name\tSuper+Q").count(QLatin1Char('\t')), 0);
}

TEST_F(MenuTitlesTest, LongTitlesLoseTheirMiddle)
{
    auto const item = MenuItem::make("beginning " + std::string(300, 'm') + " end");
    QFontMetrics const metrics(QApplication::font());
    auto const shown = shownTitle(*item, metrics, 300);
    EXPECT_TRUE(shown.startsWith(QLatin1String("beginning")));
    EXPECT_TRUE(shown.endsWith(QLatin1String(" end")));
    EXPECT_LE(metrics.horizontalAdvance(shown), 300);
    EXPECT_EQ(wholeTitle(*item).size(), 314);
    EXPECT_EQ(shownTitle(*MenuItem::make("short"), metrics, 300), QLatin1String("short"));
}

TEST_F(MenuTitlesTest, WideLettersAreMeasuredTheirWidth)
{
    QFontMetrics const metrics(QApplication::font());
    for (auto const* letter : { "W", "@", "Ǆ", "語", "🙂", "﷽" }) {
        for (std::size_t count = 1; count < 60; ++count) {
            std::string title;
            for (std::size_t i = 0; i < count; ++i)
                title += letter;
            auto const shown = shownTitle(*MenuItem::make(title), metrics, 300);
            ASSERT_LE(metrics.horizontalAdvance(shown), 300) << letter << ' ' << count;
        }
    }
}

TEST_F(MenuTitlesTest, AMillionLettersAreNoWork)
{
    QElapsedTimer timer;
    timer.start();
    auto const shown = action(std::string(1'000'000, 'x'));
    EXPECT_LT(shown.size(), 200);
    EXPECT_LT(timer.elapsed(), 1000);
}

TEST_F(MenuTitlesTest, AMenuIsNotWiderThanItsTitlesMayBe)
{
    auto const& view = open(makeMenu({ std::string(250, 'm'), "short" }));
    EXPECT_LE(view.titleWidth(), QGuiApplication::primaryScreen()->geometry().width() / 2);
    EXPECT_LT(view.width(), view.titleWidth() + 80);
}

TEST_F(MenuTitlesTest, EveryRowIsAsHigh)
{
    auto const& view
        = open(makeMenu({ "plain", "tab\there", "語語語", "🙂", "a\xcc\x81\xcc\x82\xcc\x83\xcc\x84\xcc\x85" }));
    for (auto const* title : { "tab\there", "語語語", "🙂" })
        EXPECT_EQ(
            view.actionGeometry(&entry(view, title)).height(), view.actionGeometry(&entry(view, "plain")).height());
}

TEST_F(MenuTitlesTest, TheToolTipOfAShortenedTitleIsTheWholeNameAsItStands)
{
    std::string const name = "<b>bold</b> & " + std::string(250, 'm');
    auto const& view = open(makeMenu({ name, "short" }));
    moveTo(view, name);
    ASSERT_TRUE(waitFor([] { return QToolTip::isVisible(); }));
    QTextDocument document;
    document.setHtml(QToolTip::text());
    EXPECT_EQ(document.toPlainText().toStdString(), name);
    moveTo(view, "short");
    EXPECT_TRUE(waitFor([] { return !QToolTip::isVisible(); }));
}

}
}
