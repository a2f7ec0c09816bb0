#pragma once

#include "Platform/Log.h"

#include <QProcess>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace marrowick {

/// Serves events until `condition` holds; false when it does not within the deadline.
bool waitFor(std::function<bool()> const& condition, std::chrono::milliseconds deadline = std::chrono::seconds(20));

/// Runs xdotool with the words of `arguments`, and serves no events meanwhile.
void xdotool(QString const& arguments);

/// A key that is held down; the names are xdotool's.
class HeldKey {
public:
    explicit HeldKey(QString name);
    ~HeldKey();
    HeldKey(HeldKey const&) = delete;
    HeldKey& operator=(HeldKey const&) = delete;

private:
    QString name_;
};

/// A program that the test started and that ends with the test.
class TestProcess {
public:
    explicit TestProcess(QString const& program, QStringList const& arguments = {});
    ~TestProcess();

    QProcess& process() { return process_; }
    bool hasEnded() const { return process_.state() == QProcess::NotRunning; }
    /// Serves events until the process has ended; false when it does not.
    bool waitForEnd();
    void kill();
    /// What the process has written, standard error included.
    std::string const& output();

private:
    QProcess process_;
    std::string output_;
};

class RecordingLog : public Log {
public:
    void write(std::string_view message) override;
    std::vector<std::string> lines() const;

private:
    mutable std::mutex mutex_;
    std::vector<std::string> lines_;
};

}
