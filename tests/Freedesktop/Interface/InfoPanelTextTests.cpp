#include "Freedesktop/Interface/InfoPanelFixture.h"

#include <QFontInfo>
#include <QLabel>
#include <QScrollBar>
#include <QTimer>

#include <utility>

namespace marrowick {
namespace {

/// `count` lines that no other `word` has.
std::string linesOf(std::string const& word, int count)
{
    std::string text;
    for (int line = 0; line < count; ++line)
        text += word + " " + std::to_string(line) + "\n";
    return text;
}

TEST_F(InfoPanelTest, OfALongTextTheRowsThatAreSeenAreThereBeforeTheFirstPainting)
{
    auto const oneParagraph = std::string(4'000, 'm');
    for (auto const& text : { linesOf("row", 200), oneParagraph }) {
        panel_->setPreview(text);
        panel_->show();
        auto const atOnce = preview().toPlainText().toStdString();
        EXPECT_TRUE(text.starts_with(atOnce));
        EXPECT_LT(atOnce.size(), text.size());
        EXPECT_GT(preview().verticalScrollBar()->maximum(), 0);
        EXPECT_TRUE(waitFor([&] { return preview().toPlainText().toStdString() == text; }));
        EXPECT_EQ(preview().verticalScrollBar()->value(), 0);
        EXPECT_EQ(preview().textCursor().position(), 0);
        panel_->close();
    }
}

TEST_F(InfoPanelTest, TheFirstPaintingShowsWhatTheWholeTextShows)
{
    auto const text = linesOf("a row of some length, so that not every one fits into the window", 60);
    panel_->setPreview(text);
    panel_->show();
    // The scroll bar comes with an event.
    QCoreApplication::sendPostedEvents();
    ASSERT_LT(preview().toPlainText().size(), text.size());
    auto const before = preview().viewport()->grab().toImage();
    ASSERT_TRUE(waitFor([&] { return preview().toPlainText().toStdString() == text; }));
    EXPECT_EQ(preview().viewport()->grab().toImage(), before);
}

TEST_F(InfoPanelTest, ALineEndOfTwoCharactersIsNotTakenApart)
{
    std::string text;
    for (int line = 0; line < 60; ++line)
        text += std::string(79, 'x') + "\r\n";
    panel_->setPreview(text);
    panel_->show();
    ASSERT_TRUE(waitFor([&] { return preview().document()->characterCount() > 60 * 80; }));
    EXPECT_EQ(preview().blockCount(), 61);
}

TEST_F(InfoPanelTest, TheRestOfATextDoesNotComeBehindAnotherOne)
{
    show();
    bool isServed = false;
    panel_->setPreview(linesOf("first", 200));
    panel_->setPreview("second");
    QTimer::singleShot(300, panel_.get(), [&] { isServed = true; });
    EXPECT_TRUE(waitFor([&] { return isServed || preview().toPlainText() != QStringLiteral("second"); }));
    EXPECT_EQ(preview().toPlainText(), QStringLiteral("second"));
    auto const third = linesOf("third", 200);
    panel_->setPreview(linesOf("second", 200));
    panel_->setPreview(third);
    EXPECT_TRUE(waitFor([&] { return preview().toPlainText().toStdString() == third; }));
}

TEST_F(InfoPanelTest, ATextIsCompleteAlsoWhereNothingOfItIsPainted)
{
    auto const text = linesOf("row", 200);
    show();
    panel_->close();
    panel_->setPreview(text);
    panel_->show();
    panel_->close();
    EXPECT_TRUE(waitFor([&] { return preview().toPlainText().toStdString() == text; }));
}

TEST_F(InfoPanelTest, LettersThatArePutTogetherAreShaped)
{
    show();
    auto const shapes = [this] { return !(preview().font().styleStrategy() & QFont::PreferNoShaping); };
    for (auto const& [text, isShaped] : { std::pair { "plain, caf\u00e9", false }, { "cafe\u0301", true },
             { "plain", false }, { "\u0646\u0635", true } }) {
        panel_->setPreview(text);
        EXPECT_EQ(shapes(), isShaped) << text;
        EXPECT_EQ(preview().toPlainText(), QString::fromUtf8(text));
        EXPECT_TRUE(QFontInfo(preview().font()).fixedPitch());
    }
}

TEST_F(InfoPanelTest, WhatWasSetWhileItWasClosedIsThereWhenItIsShown)
{
    show();
    panel_->close();
    panel_->setName("other.txt");
    panel_->setDetail("a detail");
    panel_->setPath("/other.txt");
    panel_->setPreview("other");
    show();
    EXPECT_EQ(panel_->windowTitle(), QStringLiteral("other.txt Info"));
    EXPECT_EQ(name().text(), QStringLiteral("other.txt"));
    EXPECT_EQ(name().accessibleName(), QStringLiteral("other.txt"));
    EXPECT_EQ(detail().text(), QStringLiteral("a detail"));
    EXPECT_EQ(path().text(), QStringLiteral("/other.txt"));
    EXPECT_EQ(preview().toPlainText(), QStringLiteral("other"));
}

TEST_F(InfoPanelTest, ALargerFontLeavesOutMoreOfALongName)
{
    auto const whole = "The beginning " + std::string(200, 'x') + " the end.txt";
    panel_->setName(whole);
    show();
    auto const before = name().text();
    auto larger = name().font();
    larger.setPixelSize(larger.pixelSize() * 2);
    name().setFont(larger);
    EXPECT_LT(name().text().size(), before.size());
    EXPECT_LE(name().fontMetrics().horizontalAdvance(name().text()), name().width());
    name().resize(name().width() / 2, name().height());
    EXPECT_LE(name().fontMetrics().horizontalAdvance(name().text()), name().width());
}

TEST_F(InfoPanelTest, LabelsArePaintedAsTheToolkitPaintsThem)
{
    panel_->setPath("/\u05d0\u05d1 and some letters");
    show();
    for (auto* label : { static_cast<ElidedLabel*>(&name()), &detail(), static_cast<ElidedLabel*>(&path()) }) {
        QLabel plain(panel_.get());
        plain.setFont(label->font());
        plain.setPalette(label->palette());
        plain.setText(label->text());
        plain.setTextFormat(Qt::PlainText);
        plain.setAlignment(Qt::AlignCenter);
        plain.resize(label->size());
        EXPECT_EQ(label->grab().toImage(), plain.grab().toImage()) << label->text().toStdString();
    }
}

}
}
