#include "Freedesktop/Interface/SettingsWindow.h"

#include "Freedesktop/Interface/Conversions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace marrowick {

namespace {

constexpr int margin = 20;
constexpr int sectionSpacing = 16;
constexpr int lineSpacing = 4;
constexpr int buttonSpacing = 6;
constexpr int folderFieldWidth = 420;
constexpr double headingPoints = 12;
/// Room that the frame takes above the window; what it really is, only the window manager knows.
constexpr int titleBarHeight = 36;

QVBoxLayout* column()
{
    auto* const layout = new QVBoxLayout;
    layout->setSpacing(lineSpacing);
    return layout;
}

QRect screenInUse(QWidget const& widget)
{
    auto const* screen = widget.screen() ? widget.screen() : QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect();
}

}

SettingsWindow::SettingsWindow(PreferencesLayout const& layout, PreferencesHandlers handlers)
    : QWidget(nullptr,
        Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
            | Qt::WindowCloseButtonHint)
    , handlers_(std::move(handlers))
    , content_(new QWidget)
    , leastSize_(layout.width, layout.height)
    , folderField_(new QLabel(content_))
    , sortPopup_(new QComboBox(content_))
{
    setWindowTitle(displayText(layout.title));
    auto* const stack = new QVBoxLayout(content_);
    stack->setSpacing(sectionSpacing);
    stack->setContentsMargins(margin, margin, margin, margin);
    stack->addLayout(folderSection(layout));
    stack->addLayout(sortSection(layout));
    for (auto const& group : layout.groups)
        stack->addLayout(checkboxSection(group));
    stack->addStretch();

    auto* const scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setWidget(content_);
    auto* const whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(scroll);
    fitIntoScreen();
}

void SettingsWindow::fitIntoScreen()
{
    auto size = content_->sizeHint().expandedTo(leastSize_);
    auto const available = screenInUse(*this).size() - QSize(0, titleBarHeight);
    int const scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    if (size.height() > available.height())
        size.rwidth() += scrollBar;
    if (size.width() > available.width())
        size.rheight() += scrollBar;
    setFixedSize(size.boundedTo(available));
}

QLayout* SettingsWindow::folderSection(PreferencesLayout const& layout)
{
    auto* const label = new QLabel(titleText(layout.folderLabel), content_);
    folderField_->setFixedWidth(folderFieldWidth);
    folderField_->setTextFormat(Qt::PlainText);
    folderField_->setObjectName(QStringLiteral("folder"));
    auto* const choose = new QPushButton(titleText(layout.chooseTitle), content_);
    auto* const reveal = new QPushButton(titleText(layout.revealTitle), content_);
    for (auto* button : { choose, reveal })
        button->setAutoDefault(false);
    connect(choose, &QPushButton::clicked, this, [this] { handlers_.chooseFolder(); });
    connect(reveal, &QPushButton::clicked, this, [this] { handlers_.revealFolder(); });

    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(buttonSpacing);
    buttons->addWidget(choose);
    buttons->addWidget(reveal);
    buttons->addStretch();
    auto* const section = column();
    section->addWidget(label);
    section->addWidget(folderField_);
    section->addLayout(buttons);
    return section;
}

QLayout* SettingsWindow::sortSection(PreferencesLayout const& layout)
{
    auto* const label = new QLabel(titleText(layout.sortLabel), content_);
    for (auto const& title : layout.sortTitles)
        sortPopup_->addItem(displayText(title));
    // A screen reader says the label, then the choice.
    label->setBuddy(sortPopup_);
    connect(sortPopup_, &QComboBox::currentIndexChanged, this,
        [this](int index) { handlers_.sortModeChanged(static_cast<std::size_t>(std::max(index, 0))); });
    auto* const section = column();
    section->addWidget(label);
    section->addWidget(sortPopup_, 0, Qt::AlignLeading);
    return section;
}

QLayout* SettingsWindow::checkboxSection(CheckboxGroup const& group)
{
    auto* const heading = new QLabel(titleText(group.title), content_);
    auto font = heading->font();
    font.setBold(true);
    // Never smaller than what stands below it.
    font.setPointSizeF(std::max(headingPoints, font.pointSizeF()));
    heading->setFont(font);
    auto* const section = column();
    section->addWidget(heading);
    for (auto const& [tag, title] : group.checkboxes) {
        auto* const checkbox = new QCheckBox(titleText(title), content_);
        // Whoever toggles it: an accessibility client presses nothing.
        connect(checkbox, &QCheckBox::toggled, this,
            [this, tag = tag](bool isOn) { handlers_.checkboxToggled(tag, isOn); });
        checkboxes_[tag] = checkbox;
        section->addWidget(checkbox);
    }
    return section;
}

void SettingsWindow::setFolder(std::string const& path)
{
    folder_ = path;
    showFolder();
}

void SettingsWindow::showFolder()
{
    auto const whole = displayText(folder_);
    folderField_->setText(folderField_->fontMetrics().elidedText(whole, Qt::ElideMiddle, folderFieldWidth));
    folderField_->setToolTip(plainAsRichText(whole));
    folderField_->setAccessibleName(whole);
}

void SettingsWindow::selectSortMode(std::size_t index)
{
    QSignalBlocker const blocker(sortPopup_);
    sortPopup_->setCurrentIndex(static_cast<int>(index));
}

void SettingsWindow::setChecked(std::size_t tag, bool isOn)
{
    auto const found = checkboxes_.find(tag);
    if (found == checkboxes_.end())
        return;
    QSignalBlocker const blocker(found->second);
    found->second->setChecked(isOn);
}

void SettingsWindow::show()
{
    fitIntoScreen();
    move(screenInUse(*this).center() - rect().center());
    showNormal();
    raise();
    activateWindow();
}

void SettingsWindow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close))
        close();
    else
        QWidget::keyPressEvent(event);
}

bool SettingsWindow::event(QEvent* event)
{
    bool const isHandled = QWidget::event(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::ScreenChangeInternal)
        showFolder();
    return isHandled;
}

}
