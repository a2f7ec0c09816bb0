#pragma once

#include <QDBusAbstractAdaptor>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <functional>

namespace marrowick {

/// What other programs, and other starts of this one, ask of the running program over the session bus.
class ApplicationInterface : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    ApplicationInterface(QObject& exported, std::function<void()> activated);

public Q_SLOTS:
    // The names and arguments are the interface's own.
    void Activate(QVariantMap const& platformData);
    /// The program has no documents: the same as `Activate`.
    void Open(QStringList const& uris, QVariantMap const& platformData);
    /// The program's desktop entry names no actions: none is known.
    void ActivateAction(QString const& name, QVariantList const& parameter, QVariantMap const& platformData);

private:
    std::function<void()> activated_;
};

}
