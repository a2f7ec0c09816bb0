#include "Freedesktop/Interface/AlertUser.h"

#include "Freedesktop/Interface/AlertText.h"
#include "Freedesktop/Interface/SessionSupport.h"

#include <QApplication>
#include <QPointer>
#include <QWindow>

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace marrowick {

AlertUser::AlertUser(std::function<void(AlertWindow&)> acts)
    : acts_(std::move(acts))
{
    QMetaObject::invokeMethod(
        &context_, [this] { act(); }, Qt::QueuedConnection);
}

AlertUser::~AlertUser()
{
    EXPECT_TRUE(hasSeenAlert_);
}

void AlertUser::act()
{
    auto const before = visibleAlerts();
    ASSERT_TRUE(waitFor([&] {
        auto* const window = frontAlert();
        return window && window->windowHandle()->isExposed() && std::count(before.begin(), before.end(), window) == 0;
    })) << "no alert came up";
    hasSeenAlert_ = true;
    QPointer const window(frontAlert());
    acts_(*window);
    if (!waitFor([&] { return !window || !window->isVisible(); }, std::chrono::seconds(5))) {
        ADD_FAILURE() << "the alert was not answered";
        window->reject();
    }
}

AlertWindow* frontAlert()
{
    return dynamic_cast<AlertWindow*>(QApplication::activeWindow());
}

std::vector<AlertWindow*> visibleAlerts()
{
    std::vector<AlertWindow*> alerts;
    for (auto* const widget : QApplication::topLevelWidgets()) {
        if (auto* const alert = dynamic_cast<AlertWindow*>(widget); alert && alert->isVisible())
            alerts.push_back(alert);
    }
    return alerts;
}

std::vector<QPushButton*> buttonsOf(AlertWindow const& window)
{
    auto const found = window.findChildren<QPushButton*>();
    std::vector<QPushButton*> buttons(found.begin(), found.end());
    std::sort(buttons.begin(), buttons.end(), [](auto const* a, auto const* b) { return a->x() < b->x(); });
    return buttons;
}

std::vector<std::string> buttonTexts(AlertWindow const& window)
{
    std::vector<std::string> texts;
    for (auto const* button : buttonsOf(window))
        texts.push_back(button->text().toStdString());
    return texts;
}

std::vector<std::string> textsOf(AlertWindow const& window)
{
    std::vector<AlertText*> paragraphs;
    for (auto* const label : window.findChildren<QLabel*>()) {
        if (auto* const paragraph = dynamic_cast<AlertText*>(label))
            paragraphs.push_back(paragraph);
    }
    std::sort(paragraphs.begin(), paragraphs.end(), [](auto const* a, auto const* b) { return a->y() < b->y(); });
    std::vector<std::string> texts;
    for (auto const* paragraph : paragraphs)
        texts.push_back(paragraph->text().toStdString());
    return texts;
}

}
