#include "Freedesktop/Interface/AlertUser.h"
#include "Freedesktop/Interface/FreedesktopAlerts.h"
#include "Freedesktop/Interface/SessionSupport.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QProxyStyle>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyleFactory>
#include <QTimer>

#include <gmock/gmock.h>

#include <optional>

namespace marrowick {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

void press(char const* key)
{
    xdotool(QStringLiteral("key ") + QLatin1String(key));
}

/// A desktop that sorts the buttons of its dialogs in one of the ways that there are.
class LayoutStyle : public QProxyStyle {
public:
    explicit LayoutStyle(int buttonLayout)
        : QProxyStyle(QStyleFactory::create(QStringLiteral("fusion")))
        , buttonLayout_(buttonLayout)
    {
    }

    int styleHint(
        StyleHint hint, QStyleOption const* option, QWidget const* widget, QStyleHintReturn* returnData) const override
    {
        return hint == SH_DialogButtonLayout ? buttonLayout_ : QProxyStyle::styleHint(hint, option, widget, returnData);
    }

private:
    int buttonLayout_;
};

class AlertsTest : public testing::Test {
protected:
    AlertsTest() { xdotool(QStringLiteral("mousemove 0 0")); }

    std::size_t run(Alert const& alert, std::function<void(AlertWindow&)> acts)
    {
        AlertUser const user(std::move(acts));
        return alerts_.runModal(alert);
    }

    static Alert question()
    {
        return { AlertStyle::warning, "Move, copy, or alias?", "Put a into “b”.",
            { "Move", "Copy", "Alias", "Cancel" } };
    }

    static QRect screen() { return QGuiApplication::primaryScreen()->availableGeometry(); }

    std::shared_ptr<DeliveryGate> gate_ = std::make_shared<DeliveryGate>();
    FreedesktopAlerts alerts_ { gate_ };
};

TEST_F(AlertsTest, ButtonsStandInTheGivenOrderInEveryDesktopsLayout)
{
    auto const usual = QApplication::style()->name();
    for (int const layout : { 0, 1, 2, 3, 4, 5 }) {
        QApplication::setStyle(new LayoutStyle(layout));
        auto const answer = run(question(), [&](AlertWindow& window) {
            EXPECT_THAT(buttonTexts(window), ElementsAre("Move", "Copy", "Alias", "Cancel")) << layout;
            press("Return");
        });
        EXPECT_EQ(answer, 0U) << layout;
        EXPECT_EQ(run(question(), [](AlertWindow&) { press("Escape"); }), 3U) << layout;
    }
    QApplication::setStyle(usual);
}

TEST_F(AlertsTest, EachButtonAnswersWithItsIndex)
{
    for (std::size_t index = 0; index < 4; ++index)
        EXPECT_EQ(run(question(), [&](AlertWindow& window) { buttonsOf(window)[index]->click(); }), index);
}

TEST_F(AlertsTest, APointerAnswersToo)
{
    auto const answer = run(question(), [](AlertWindow& window) {
        auto const* const button = buttonsOf(window)[1];
        auto const place = button->mapToGlobal(button->rect().center());
        xdotool(QStringLiteral("mousemove %1 %2 click 1").arg(place.x()).arg(place.y()));
    });
    EXPECT_EQ(answer, 1U);
}

TEST_F(AlertsTest, TabChoosesAmongTheButtonsForReturn)
{
    EXPECT_EQ(run(question(), [](AlertWindow&) { xdotool("key Tab Tab Return"); }), 2U);
}

TEST_F(AlertsTest, WithoutButtonsThereIsOneThatSaysOK)
{
    Alert alert;
    alert.messageText = "Done.";
    for (auto const* key : { "Return", "Escape" }) {
        auto const answer = run(alert, [&](AlertWindow& window) {
            EXPECT_THAT(buttonTexts(window), ElementsAre("OK"));
            press(key);
        });
        EXPECT_EQ(answer, 0U);
    }
}

TEST_F(AlertsTest, AnErrorsAlertShowsItsMessageAndOneButton)
{
    AlertUser const user([](AlertWindow& window) {
        EXPECT_THAT(textsOf(window), ElementsAre("“a” could not be moved because the disk is full."));
        EXPECT_THAT(buttonTexts(window), ElementsAre("OK"));
        press("Escape");
    });
    alerts_.runModal(Error { {}, "“a” could not be moved because the disk is full." });
    EXPECT_FALSE(gate_->isClosed());
}

TEST_F(AlertsTest, AnErrorWithoutAMessageCanBeDismissed)
{
    AlertUser const user([](AlertWindow& window) {
        EXPECT_THAT(textsOf(window), IsEmpty());
        EXPECT_TRUE(screen().contains(window.frameGeometry()));
        press("Return");
    });
    alerts_.runModal(Error {});
}

TEST_F(AlertsTest, TheStyleIsSeenFromThePicture)
{
    auto const pictureOf = [&](AlertStyle style) {
        auto alert = question();
        alert.style = style;
        QImage picture;
        run(alert, [&](AlertWindow& window) {
            for (auto const* label : window.findChildren<QLabel*>()) {
                if (!label->pixmap().isNull())
                    picture = label->pixmap().toImage();
            }
            press("Escape");
        });
        return picture;
    };
    auto const warning = pictureOf(AlertStyle::warning);
    EXPECT_FALSE(warning.isNull());
    EXPECT_EQ(warning, pictureOf(AlertStyle::warning));
    EXPECT_NE(warning, pictureOf(AlertStyle::informational));
}

TEST_F(AlertsTest, EveryTextIsShownLiterally)
{
    struct Row {
        std::string text;
        std::string shown;
    };
    std::string const name = "<b>x</b>&<img src=\"/etc/hosts\">&amp;%1\\n";
    for (auto const& row : {
             Row { name, name },
             Row { "two\nlines\tand a bell\a", "two␊lines␉and a bell␇" },
             Row { "evil\u202Egpj.exe", "evil\uFFFDgpj.exe" },
             Row { "line\u2028separator", "line␤separator" },
             Row { "broken \xFF\xC3", "broken \uFFFD\uFFFD" },
         }) {
        Alert const alert { AlertStyle::warning, row.text, row.text, { row.text, "Cancel" } };
        run(alert, [&](AlertWindow& window) {
            EXPECT_THAT(textsOf(window), ElementsAre(row.shown, row.shown));
            for (auto const* label : window.findChildren<QLabel*>()) {
                EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
            }
            auto const title = QString::fromStdString(row.shown).replace(QStringLiteral("&"), QStringLiteral("&&"));
            EXPECT_EQ(buttonTexts(window).at(0), title.toStdString());
            press("Escape");
        });
    }
}

TEST_F(AlertsTest, LinesOfAReportStandBelowEachOther)
{
    std::vector<int> heights;
    for (auto const lineFeed : { LineFeed::ofName, LineFeed::endOfLine }) {
        Alert const alert { .messageText = "Report",
            .informativeText = "“a\rb”: one\n“c”: two\n\n“d”: three",
            .buttons = {},
            .lineFeed = lineFeed };
        run(alert, [&](AlertWindow& window) {
            auto const labels = window.findChild<QScrollArea*>()->findChildren<QLabel*>();
            ASSERT_THAT(labels, SizeIs(2));
            EXPECT_EQ(labels.back()->text(),
                lineFeed == LineFeed::endOfLine ? QStringLiteral("“a␍b”: one\n“c”: two\n\n“d”: three")
                                                : QStringLiteral("“a␍b”: one␊“c”: two␊␊“d”: three"));
            heights.push_back(labels.back()->height());
            press("Return");
        });
    }
    ASSERT_THAT(heights, SizeIs(2));
    EXPECT_GT(heights.back(), 3 * heights.front());
}

TEST_F(AlertsTest, AnUnderlinedLetterIsNeverMadeOfAName)
{
    Alert const alert { AlertStyle::warning, "&Question", "", { "&Replace", "Cancel" } };
    // As a mnemonic the first letter would answer.
    EXPECT_EQ(run(alert, [](AlertWindow&) { xdotool("key alt+r Escape"); }), 1U);
}

TEST_F(AlertsTest, LongNamesBreakAnywhereAndStayInTheWindow)
{
    std::string const name(255, 'W');
    Alert const alert { AlertStyle::warning, "“" + name + "” already exists in “" + name + "”.",
        "Do you want to replace it?", { "Replace", "Cancel" } };
    run(alert, [](AlertWindow& window) {
        EXPECT_TRUE(screen().contains(window.frameGeometry()));
        EXPECT_LE(window.width(), screen().width() / 2);
        auto const* const area = window.findChild<QScrollArea*>();
        EXPECT_TRUE(area->rect().contains(area->widget()->geometry()));
        press("Escape");
    });
}

TEST_F(AlertsTest, ThousandsOfNamesStayOnTheScreenAndCanBeScrolled)
{
    auto alert = question();
    for (int i = 0; i < 5000; ++i)
        alert.informativeText += "some file with a name of its own " + std::to_string(i) + ".txt, ";
    alert.informativeText += "the end";
    auto const answer = run(alert, [](AlertWindow& window) {
        EXPECT_TRUE(screen().contains(window.frameGeometry()));
        for (auto const* button : buttonsOf(window))
            EXPECT_TRUE(window.rect().contains(button->geometry()));
        auto const* const bar = window.findChild<QScrollArea*>()->verticalScrollBar();
        EXPECT_TRUE(bar->isVisible());
        EXPECT_EQ(bar->value(), 0);
        press("Next");
        EXPECT_TRUE(waitFor([&] { return bar->value() > 0; }));
        press("Prior");
        EXPECT_TRUE(waitFor([&] { return bar->value() == 0; }));
        auto const text = textsOf(window).at(1);
        EXPECT_TRUE(text.starts_with("Put a into"));
        EXPECT_TRUE(text.ends_with("the end"));
        press("Return");
    });
    EXPECT_EQ(answer, 0U);
}

TEST_F(AlertsTest, AShortTextMakesAWindowWithoutAScrollBar)
{
    run(question(), [](AlertWindow& window) {
        EXPECT_FALSE(window.findChild<QScrollArea*>()->verticalScrollBar()->isVisible());
        EXPECT_EQ(window.windowTitle(), "Marrowick");
        EXPECT_LE(window.width(), 500);
        press("Escape");
    });
}

TEST_F(AlertsTest, AKeyThatWasHeldBeforeIsNoAnswer)
{
    std::optional<HeldKey> held(std::in_place, QStringLiteral("Return"));
    auto const answer = run(question(), [&](AlertWindow& window) {
        // Repetitions begin after two thirds of a second and come every fortieth of one.
        bool hasPassed = false;
        QTimer::singleShot(1500, [&] { hasPassed = true; });
        EXPECT_TRUE(waitFor([&] { return hasPassed; }));
        EXPECT_TRUE(window.isVisible());
        held.reset();
        press("Escape");
    });
    EXPECT_EQ(answer, 3U);
}

TEST_F(AlertsTest, TheGateIsClosedWhileAnAlertIsUp)
{
    EXPECT_FALSE(gate_->isClosed());
    int delivered = 0;
    run(question(), [&](AlertWindow&) {
        EXPECT_TRUE(gate_->isClosed());
        gate_->deliver([&] { ++delivered; });
        press("Escape");
    });
    EXPECT_FALSE(gate_->isClosed());
    EXPECT_EQ(delivered, 0);
    EXPECT_TRUE(waitFor([&] { return delivered == 1; }));
}

TEST_F(AlertsTest, AnAlertInAnAlertIsAnsweredFirst)
{
    std::vector<int> delivered;
    std::optional<std::size_t> inner;
    auto const outer = run(question(), [&](AlertWindow& window) {
        gate_->deliver([&] { delivered.push_back(1); });
        inner = run({ AlertStyle::warning, "Again?", "", { "Yes", "No" } }, [&](AlertWindow& nested) {
            EXPECT_THAT(visibleAlerts(), SizeIs(2));
            EXPECT_NE(&nested, &window);
            gate_->deliver([&] { delivered.push_back(2); });
            press("Escape");
        });
        QCoreApplication::processEvents();
        EXPECT_THAT(delivered, IsEmpty());
        EXPECT_TRUE(waitFor([&] { return window.isActiveWindow(); }));
        press("Return");
    });
    EXPECT_EQ(inner, 1U);
    EXPECT_EQ(outer, 0U);
    EXPECT_TRUE(waitFor([&] { return delivered.size() == 2; }));
    EXPECT_THAT(delivered, ElementsAre(1, 2));
}

TEST_F(AlertsTest, TheEndOfTheProgramAnswersWithTheLastButton)
{
    QTimer user;
    std::function<void()> endProgram;
    QObject::connect(&user, &QTimer::timeout, [&] {
        if (frontAlert())
            endProgram();
    });
    auto const runUntilEnd = [&] {
        std::vector<std::size_t> answers;
        auto const core = [&] {
            answers.push_back(alerts_.runModal(question()));
            // What is asked on the way out is not shown any more.
            answers.push_back(alerts_.runModal(question()));
        };
        QMetaObject::invokeMethod(&user, core, Qt::QueuedConnection);
        user.start(10);
        EXPECT_EQ(QApplication::exec(), 0);
        user.stop();
        EXPECT_THAT(visibleAlerts(), IsEmpty());
        return answers;
    };
    endProgram = [] { QCoreApplication::exit(0); };
    EXPECT_THAT(runUntilEnd(), ElementsAre(3, 3));
    // What the toolkit does when the session ends.
    endProgram = [] {
        QEvent quit(QEvent::Quit);
        QCoreApplication::sendEvent(qApp, &quit);
    };
    EXPECT_THAT(runUntilEnd(), ElementsAre(3, 3));
}

TEST_F(AlertsTest, AccessibilityClientsReadTheTextsAndPressTheButtons)
{
    auto const answer = run(question(), [](AlertWindow& window) {
        auto* const interface = QAccessible::queryAccessibleInterface(&window);
        EXPECT_EQ(interface->role(), QAccessible::Dialog);
        EXPECT_EQ(interface->text(QAccessible::Name), "Marrowick");
        EXPECT_EQ(interface->text(QAccessible::Description), "Move, copy, or alias?");
        std::vector<std::string> texts;
        for (auto* const label : window.findChildren<QLabel*>()) {
            auto* const text = QAccessible::queryAccessibleInterface(label);
            if (text->role() == QAccessible::StaticText)
                texts.push_back(text->text(QAccessible::Name).toStdString());
        }
        EXPECT_THAT(texts, testing::IsSupersetOf({ "Move, copy, or alias?", "Put a into “b”." }));
        auto* const button = QAccessible::queryAccessibleInterface(buttonsOf(window)[2]);
        EXPECT_EQ(button->text(QAccessible::Name), "Alias");
        button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    });
    EXPECT_EQ(answer, 2U);
}

std::string activeWindowTitle()
{
    QProcess query;
    query.start(QStringLiteral("xdotool"), { QStringLiteral("getactivewindow"), QStringLiteral("getwindowname") });
    query.waitForFinished();
    return query.readAllStandardOutput().trimmed().toStdString();
}

/// With a window manager, which decides where windows are and which one is in front.
class ManagedAlertsTest : public AlertsTest {
protected:
    ManagedAlertsTest()
        : manager_(QStringLiteral("openbox"))
    {
        // It says that it is there before it takes windows into its care.
        EXPECT_TRUE(waitFor([] {
            QWidget probe;
            probe.show();
            return waitFor([&] { return probe.frameGeometry() != probe.geometry(); }, std::chrono::milliseconds(500));
        }));
    }

    TestProcess manager_;
};

TEST_F(ManagedAlertsTest, ClosingTheWindowAnswersWithTheLastButton)
{
    auto const answer = run(question(), [](AlertWindow&) {
        QProcess::execute(QStringLiteral("wmctrl"), { QStringLiteral("-c"), QStringLiteral("Marrowick") });
    });
    EXPECT_EQ(answer, 3U);
}

TEST_F(ManagedAlertsTest, TheAlertComesBeforeOtherProgramsAndAgainForWhomIsTurnedAway)
{
    TestProcess const other(QStringLiteral("xterm"), { QStringLiteral("-T"), QStringLiteral("other") });
    ASSERT_TRUE(waitFor([] { return activeWindowTitle() == "other"; }));
    run(question(), [](AlertWindow&) {
        EXPECT_TRUE(waitFor([] { return activeWindowTitle() == "Marrowick"; }));
        press("Escape");
    });
    run(question(), [this](AlertWindow& window) {
        QProcess::execute(QStringLiteral("wmctrl"), { QStringLiteral("-a"), QStringLiteral("other") });
        EXPECT_TRUE(waitFor([&] { return !window.isActiveWindow(); }));
        EXPECT_TRUE(gate_->turnsUserAway());
        EXPECT_TRUE(waitFor([&] { return window.isActiveWindow(); }));
        EXPECT_TRUE(waitFor([] { return activeWindowTitle() == "Marrowick"; }));
        press("Escape");
    });
}

TEST_F(ManagedAlertsTest, TheFrameIsOnTheScreenToo)
{
    std::string const longName(20000, 'x');
    run({ AlertStyle::warning, longName, longName, { "Replace", "Cancel" } }, [](AlertWindow& window) {
        EXPECT_TRUE(waitFor([&] { return window.frameGeometry() != window.geometry(); }));
        EXPECT_TRUE(screen().contains(window.frameGeometry()));
        press("Return");
    });
}

}
}
