// How a menu's view answers to the keyboard and the mouse.

#include "Freedesktop/Interface/Conversions.h"
#include "Freedesktop/Interface/MenuKeys.h"
#include "Freedesktop/Interface/MenuTitles.h"
#include "Freedesktop/Interface/MenuView.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyle>
#include <QStyleOption>
#include <QToolTip>

#include <utility>

namespace marrowick {

namespace {

/// Sets a variable for its own lifetime.
template<typename T>
class Temporarily {
public:
    Temporarily(T& variable, T value)
        : variable_(variable)
        , previous_(std::exchange(variable, std::move(value)))
    {
    }
    ~Temporarily() { variable_ = std::move(previous_); }
    Temporarily(Temporarily const&) = delete;
    Temporarily& operator=(Temporarily const&) = delete;

private:
    T& variable_;
    T previous_;
};

Event releaseEvent(QMouseEvent const& event)
{
    auto const type = event.button() == Qt::RightButton ? EventType::rightMouseUp : EventType::leftMouseUp;
    return { type, modifierFlagsFrom(event.modifiers()) };
}

/// Whether the style gives the menu a shape, which depends on the size.
bool isMasked(QMenu const& menu)
{
    QStyleOption option;
    option.initFrom(&menu);
    QStyleHintReturnMask mask;
    return menu.style()->styleHint(QStyle::SH_Menu_Mask, &option, &menu, &mask) != 0;
}

}

bool MenuView::event(QEvent* event)
{
    MenuTracking::HandlerScope const handler(tracking_);
    return handle(*event);
}

bool MenuView::handle(QEvent& event)
{
    switch (event.type()) {
    case QEvent::Resize:
        // QMenu lays its entries out again, though it has just done so to find the size and nothing depends on that.
        if (!isMasked(*this))
            return QWidget::event(&event);
        break;
    case QEvent::KeyPress:
        return keyPressed(static_cast<QKeyEvent&>(event));
    case QEvent::ToolTip:
        return showToolTip(static_cast<QHelpEvent&>(event));
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        mousePressed(static_cast<QMouseEvent&>(event));
        break;
    case QEvent::MouseButtonRelease: {
        Temporarily<std::optional<Event>> const cause(cause_, releaseEvent(static_cast<QMouseEvent&>(event)));
        return QMenu::event(&event);
    }
    case QEvent::MouseMove:
    case QEvent::Leave:
    case QEvent::Wheel:
    case QEvent::Timer: {
        // Qt says when the highlight comes to an entry, never when it goes to none.
        bool const isHandled = QMenu::event(&event);
        if (isVisible())
            reportHighlight(highlightedEntry());
        return isHandled;
    }
    default:
        break;
    }
    return QMenu::event(&event);
}

bool MenuView::keyPressed(QKeyEvent& event)
{
    event.accept();
    // Qt closes the menu for Alt; a modifier is only the beginning of a key.
    if (isModifierKey(event.key()))
        return true;

    MenuView* target = this;
    while (!target->highlightedEntry() && target->parentView())
        target = target->parentView();
    if (!target->highlightedEntry())
        target = this;

    auto const keyEvent = keyEventFrom(event);
    Event const current { EventType::keyDown, keyEvent.flags };
    FreedesktopEvents::Scope const scope(tracking_.events(), current);
    Temporarily<std::optional<Event>> const cause(cause_, current);

    target->reportHighlight(target->highlightedEntry());
    auto const menu = target->menu_;
    menu->performKeyEquivalent(keyEvent, [&] { return toolkitsOwn(event, keyEvent); });
    if (isVisible()) {
        scrollToHighlight();
        reportHighlight(highlightedEntry());
    }
    return true;
}

bool MenuView::toolkitsOwn(QKeyEvent& event, KeyEvent const& keyEvent)
{
    constexpr auto shortcutKeys = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    if (!(event.modifiers() & shortcutKeys) && typeAhead(exactText(keyEvent.charactersIgnoringModifiers)))
        return true;
    event.accept();
    return QMenu::event(&event) && event.isAccepted();
}

bool MenuView::typeAhead(QString const& typed)
{
    // A blank chooses the entry in some styles.
    if (typed.isEmpty() || !typed.front().isPrint() || typed.front().isSpace())
        return false;

    auto const all = actions();
    auto const count = all.size();
    auto const start = all.indexOf(activeAction());
    for (qsizetype step = 1; step <= count; ++step) {
        auto& entry = static_cast<MenuEntry&>(*all.at((start + step + count) % count));
        if (entry.isSeparator() || !entry.isEnabled())
            continue;
        if (wholeTitle(*entry.item()).startsWith(typed, Qt::CaseInsensitive)) {
            highlightWithoutOpening(entry);
            return true;
        }
    }
    return false;
}

void MenuView::mousePressed(QMouseEvent const& event)
{
    QPoint const position = event.globalPosition().toPoint();
    for (auto* view = this; view; view = view->parentView()) {
        if (view->geometry().contains(position))
            return;
    }
    tracking_.pressedOutside(position);
}

bool MenuView::showToolTip(QHelpEvent const& event)
{
    auto const* const entry = static_cast<MenuEntry const*>(actionAt(event.pos()));
    QString const whole = entry ? wholeTitle(*entry->item()) : QString();
    if (whole.isEmpty() || shownTitle(*entry->item(), fontMetrics(), titleWidth()) == whole)
        QToolTip::hideText();
    else
        QToolTip::showText(event.globalPos(), plainAsRichText(whole), this, actionGeometry(activeAction()));
    return true;
}

}
