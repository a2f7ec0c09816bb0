#include "Freedesktop/Interface/Pressable.h"

#include <QAccessibleWidget>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace marrowick {

namespace {

class AccessiblePressable : public QAccessibleWidget {
public:
    AccessiblePressable(QWidget& widget, Pressable& pressable)
        : QAccessibleWidget(&widget, pressable.role())
        , pressable_(pressable)
    {
    }

    QStringList actionNames() const override { return QStringList(pressAction()) + QAccessibleWidget::actionNames(); }

    void doAction(QString const& name) override
    {
        if (name == pressAction())
            pressable_.press();
        else
            QAccessibleWidget::doAction(name);
    }

    QStringList keyBindingsForAction(QString const& name) const override
    {
        return name == pressAction() ? pressable_.keys() : QAccessibleWidget::keyBindingsForAction(name);
    }

private:
    Pressable& pressable_;
};

QAccessibleInterface* makeInterface(QString const&, QObject* object)
{
    auto* const widget = qobject_cast<QWidget*>(object);
    auto* const pressable = dynamic_cast<Pressable*>(object);
    return widget && pressable ? new AccessiblePressable(*widget, *pressable) : nullptr;
}

}

Pressable::Pressable()
{
    // Before a client can ask: what it hears first of a widget is kept.
    static bool const isInstalled = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    static_cast<void>(isInstalled);
}

void drawFocusFrame(QWidget& widget)
{
    if (!widget.hasFocus() || !widget.window()->testAttribute(Qt::WA_KeyboardFocusChange))
        return;
    QStyleOptionFocusRect option;
    option.initFrom(&widget);
    option.state |= QStyle::State_KeyboardFocusChange;
    option.backgroundColor = widget.palette().color(QPalette::Window);
    QStylePainter painter(&widget);
    painter.drawPrimitive(QStyle::PE_FrameFocusRect, option);
}

bool isPressKey(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
}

}
