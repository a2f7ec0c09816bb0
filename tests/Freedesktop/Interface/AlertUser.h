#pragma once

#include "Freedesktop/Interface/AlertWindow.h"

#include <QPushButton>

#include <functional>
#include <string>
#include <vector>

namespace marrowick {

/// What the user does once an alert is on the screen and has the keyboard. To be made just before the alert is run; an
/// alert that is not answered then fails the test and is closed.
class AlertUser {
public:
    explicit AlertUser(std::function<void(AlertWindow& window)> acts);
    ~AlertUser();
    AlertUser(AlertUser const&) = delete;
    AlertUser& operator=(AlertUser const&) = delete;

private:
    void act();

    std::function<void(AlertWindow& window)> acts_;
    bool hasSeenAlert_ = false;
    QObject context_;
};

/// The alert that has the keyboard; null for none.
AlertWindow* frontAlert();
std::vector<AlertWindow*> visibleAlerts();

/// The buttons as they stand, from left to right.
std::vector<QPushButton*> buttonsOf(AlertWindow const& window);
std::vector<std::string> buttonTexts(AlertWindow const& window);

/// The texts from top to bottom.
std::vector<std::string> textsOf(AlertWindow const& window);

}
