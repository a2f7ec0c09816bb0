#pragma once

#include <QObject>

#include <chrono>
#include <ctime>

namespace marrowick::benchmarks {

/// Sees a popped-up menu's first painting; the clock runs from when this is made.
class FirstPaint : public QObject {
public:
    using Seconds = std::chrono::duration<double>;

    FirstPaint();

    /// Serves events until a menu has been painted. False when that took too long.
    bool wait(std::chrono::seconds patience);

    Seconds wallTime() const { return wallTime_; }

    /// User and system time of this process.
    Seconds cpuTime() const { return cpuTime_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::chrono::steady_clock::time_point start_;
    Seconds cpuStart_;
    Seconds wallTime_ {};
    Seconds cpuTime_ {};
    bool isPainted_ = false;
};

/// Closes every open menu and lets it be taken apart.
void closeMenus();

}
