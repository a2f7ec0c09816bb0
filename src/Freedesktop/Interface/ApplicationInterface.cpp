#include "Freedesktop/Interface/ApplicationInterface.h"

#include <utility>

namespace marrowick {

ApplicationInterface::ApplicationInterface(QObject& exported, std::function<void()> activated)
    : QDBusAbstractAdaptor(&exported)
    , activated_(std::move(activated))
{
}

void ApplicationInterface::Activate(QVariantMap const&)
{
    activated_();
}

void ApplicationInterface::Open(QStringList const&, QVariantMap const&)
{
    activated_();
}

void ApplicationInterface::ActivateAction(QString const&, QVariantList const&, QVariantMap const&) { }

}
