#pragma once

#include "Freedesktop/DeliveryGate.h"
#include "Freedesktop/Interface/QuitSignals.h"
#include "Platform/Application.h"
#include "Platform/Log.h"

#include <QApplication>
#include <QVariantMap>

#include <memory>

namespace marrowick {

class FreedesktopEvents;

/// Tells of the event that asks the application to quit, whoever sends it.
class QuitWatch : public QObject {
public:
    explicit QuitWatch(std::function<void()> quits);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> quits_;
};

/// The program as a Qt application that owns the bus name `org.marrowick.Marrowick`.
class FreedesktopApplication : public Application {
public:
    /// Connects to the display. Without one the process ends with status 1 after one line in the log. While `gate` is closed,
    /// other starts of the program do nothing but raise the alert. `argc` and what else is passed by reference must outlive
    /// the object.
    FreedesktopApplication(
        int& argc, char** argv, FreedesktopEvents& events, std::shared_ptr<DeliveryGate> gate, Log& log);
    ~FreedesktopApplication() override;

    std::optional<std::string> bundleIdentifier() const override;
    bool claimSingleInstance() override;
    void setReopenHandler(std::function<void()> handler) override;
    void setAccessoryActivationPolicy() override;
    void activate() override;
    void run(std::function<void()> didFinishLaunching) override;
    void terminate() override;
    bool isTerminating() const override { return isTerminated_; }

private:
    void askForReopen();
    void reopenIfAsked();

    FreedesktopEvents& events_;
    std::shared_ptr<DeliveryGate> gate_;
    Log& log_;
    /// What tells a desktop which start of the program a window answers.
    QVariantMap startupData_;
    std::unique_ptr<QApplication> application_;
    /// The exported object, and the context of queued calls: none arrives after its end.
    QObject object_;
    QuitSignals quitSignals_;
    std::function<void()> reopenHandler_;
    bool isAskedToReopen_ = false;
    bool hasLaunched_ = false;
    bool isTerminated_ = false;
    /// Hears of the session's end, which does not come by `terminate`.
    QuitWatch quitWatch_;
};

}
