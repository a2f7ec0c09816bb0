#pragma once

#include "Freedesktop/Interface/DraggableIcon.h"
#include "Freedesktop/Interface/ElidedLabel.h"
#include "Freedesktop/Interface/InfoPanelWindow.h"
#include "Freedesktop/Interface/KeyButton.h"
#include "Freedesktop/Interface/SessionSupport.h"

#include <QHelpEvent>
#include <QPlainTextEdit>
#include <QToolTip>
#include <QWindow>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace marrowick {

/// The panel on a display without a window manager, with a real keyboard and mouse.
class InfoPanelTest : public testing::Test {
protected:
    InfoPanelTest()
        : panel_(std::make_unique<InfoPanelWindow>(handlers()))
    {
        panel_->setName("notes.txt");
        panel_->setDetail("12 bytes • text");
        panel_->setPath("/home/somebody/notes.txt");
        panel_->setPreview("one\ntwo\n");
    }

    InfoPanelHandlers handlers()
    {
        auto const button = [this](char const* title, char key) {
            return PushButton { title, key, [this, title] { pressed_.emplace_back(title); } };
        };
        return { { button("Trash", 127), button("Reveal", 'r'), button("Get Info", 'i'), button("Dismiss", 27) },
            [this](int clickCount) { pressed_.push_back("icon " + std::to_string(clickCount)); },
            [this] { pressed_.emplace_back("path"); } };
    }

    void show()
    {
        panel_->show();
        ASSERT_TRUE(waitFor([this] { return panel_->windowHandle()->isExposed() && panel_->isActiveWindow(); }));
    }

    bool waitForPress(std::string const& what)
    {
        return waitFor([&] { return !pressed_.empty() && pressed_.back() == what; });
    }

    /// Presses a key, and another one behind it, so that whatever the first one does has been done.
    std::vector<std::string> pressesOf(char const* key)
    {
        pressed_.clear();
        xdotool(QStringLiteral("key ") + QLatin1String(key));
        xdotool(QStringLiteral("key r"));
        EXPECT_TRUE(waitForPress("Reveal")) << key;
        auto presses = pressed_;
        presses.pop_back();
        return presses;
    }

    static void click(QWidget const& widget, QPoint offset = {}, int times = 1)
    {
        auto const place = widget.mapToGlobal(widget.rect().center()) + offset;
        xdotool(
            QStringLiteral("mousemove %1 %2 click --repeat %3 --delay 20 1").arg(place.x()).arg(place.y()).arg(times));
    }

    static QString toolTipOf(QWidget& widget)
    {
        auto const place = widget.rect().center();
        QHelpEvent asked(QEvent::ToolTip, place, widget.mapToGlobal(place));
        QCoreApplication::sendEvent(&widget, &asked);
        return QToolTip::text();
    }

    template<typename T>
    T& only() const
    {
        auto const found = panel_->findChildren<QWidget*>();
        for (auto* const each : found) {
            if (auto* const wanted = dynamic_cast<T*>(each))
                return *wanted;
        }
        throw std::runtime_error("no such widget");
    }

    QList<ElidedLabel*> labels() const
    {
        QList<ElidedLabel*> found;
        for (auto* const each : panel_->findChildren<QLabel*>()) {
            if (auto* const label = dynamic_cast<ElidedLabel*>(each))
                found.append(label);
        }
        return found;
    }

    ElidedLabel& name() const { return *labels().at(0); }
    ElidedLabel& detail() const { return *labels().at(1); }
    PressableLabel& path() const { return only<PressableLabel>(); }
    DraggableIcon& icon() const { return only<DraggableIcon>(); }
    QPlainTextEdit& preview() const { return only<QPlainTextEdit>(); }

    QList<KeyButton*> buttons() const
    {
        QList<KeyButton*> found;
        for (auto* const each : panel_->findChildren<QPushButton*>())
            found.append(dynamic_cast<KeyButton*>(each));
        return found;
    }

    std::vector<std::string> pressed_;
    std::unique_ptr<InfoPanelWindow> panel_;
};

}
