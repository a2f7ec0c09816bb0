#include "Freedesktop/Preview/CardView.h"

#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/Icons.h"

#include <QEvent>
#include <QLabel>
#include <QStringList>
#include <QVBoxLayout>

namespace marrowick {

namespace {

constexpr int iconSide = 128;
constexpr int margin = 24;
constexpr int spacing = 4;
constexpr int textWidth = 400;
constexpr double nameEnlargement = 1.3;

QLabel* centredLabel(QWidget* parent)
{
    auto* const label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setAlignment(Qt::AlignCenter);
    label->setMaximumWidth(textWidth);
    return label;
}

void setLine(QLabel& label, QString const& text)
{
    label.setText(label.fontMetrics().elidedText(text, Qt::ElideMiddle, textWidth));
    label.setAccessibleName(text);
    label.setToolTip(label.text() == text ? QString() : plainAsRichText(text));
    label.setVisible(!text.isEmpty());
}

}

CardView::CardView(QWidget* parent)
    : QWidget(parent)
    , icon_(centredLabel(this))
    , nameLabel_(centredLabel(this))
    , kind_(centredLabel(this))
    , details_(centredLabel(this))
    , note_(centredLabel(this))
{
    auto font = nameLabel_->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * nameEnlargement);
    nameLabel_->setFont(font);

    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(spacing);
    column->addStretch();
    column->addWidget(icon_, 0, Qt::AlignHCenter);
    column->addSpacing(2 * spacing);
    column->addWidget(nameLabel_, 0, Qt::AlignHCenter);
    column->addWidget(kind_, 0, Qt::AlignHCenter);
    column->addWidget(details_, 0, Qt::AlignHCenter);
    column->addSpacing(spacing);
    column->addWidget(note_, 0, Qt::AlignHCenter);
    column->addStretch();
}

void CardView::show(FileURL const& url, FileFacts const& facts, QString const& note)
{
    name_ = displayText(url.lastPathComponent());
    fileIcon_ = iconFor(Image::iconForFile(url, iconSide));
    showIcon();
    setLine(*nameLabel_, name_);
    setLine(*kind_, facts.kind);
    QStringList details { facts.size, facts.date };
    details.removeAll(QString());
    setLine(*details_, details.join(QStringLiteral(" \u2022 ")));
    setLine(*note_, note);
}

QString CardView::text() const
{
    QStringList lines { name_, kind_->accessibleName(), details_->accessibleName(), note_->accessibleName() };
    lines.removeAll(QString());
    return lines.join(u'\n');
}

void CardView::showIcon()
{
    icon_->setPixmap(fileIcon_.pixmap(QSize(iconSide, iconSide), devicePixelRatioF()));
}

bool CardView::event(QEvent* event)
{
    bool const isHandled = QWidget::event(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange
        || event->type() == QEvent::ScreenChangeInternal)
        showIcon();
    return isHandled;
}

}
