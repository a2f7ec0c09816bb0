#include "Freedesktop/Interface/FreedesktopAlerts.h"

#include "Freedesktop/Interface/AlertWindow.h"

#include <QApplication>
#include <QEventLoop>

#include <utility>

namespace marrowick {

namespace {

/// A menu keeps the keyboard and the pointer to itself as long as it is open.
void closeMenus()
{
    while (auto* const popup = QApplication::activePopupWidget()) {
        if (!popup->close())
            popup->hide();
    }
}

}

FreedesktopAlerts::FreedesktopAlerts(std::shared_ptr<DeliveryGate> gate)
    : gate_(std::move(gate))
{
}

std::size_t FreedesktopAlerts::runModal(Alert const& alert)
{
    closeMenus();
    AlertWindow window(alert);
    DeliveryGate::Closure const closure(*gate_, [&window] { window.showInFront(); });
    QEventLoop loop;
    QObject::connect(&window, &QDialog::finished, &loop, &QEventLoop::quit);
    // From the loop itself, which does not begin where the program is about to end.
    QMetaObject::invokeMethod(
        &window, [&window] { window.showInFront(); }, Qt::QueuedConnection);
    loop.exec(QEventLoop::DialogExec);
    return window.answer();
}

void FreedesktopAlerts::runModal(Error const& error)
{
    Alert alert;
    alert.messageText = error.message;
    static_cast<void>(runModal(alert));
}

}
