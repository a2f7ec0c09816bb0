#pragma once

#include <string>
#include <thread>

namespace marrowick {

/// Whether this test program has mounts of its own, which nobody else sees; false where the system allows none. They are
/// made before the first test, since the mount table that is looked at must be theirs.
bool hasOwnMounts();

/// A volume whose server took the connection and says nothing: whoever asks it for anything waits.
class SilentVolume {
public:
    /// What a server that answers has in the volume: a folder, and a desktop entry.
    static constexpr char folder[] = "folder";
    static constexpr char desktopEntry[] = "viewer.desktop";
    static constexpr char desktopEntryText[] = "[Desktop Entry]\nType=Application\nName=Viewer\nIcon=folder\n";
    /// The modification date of all of it, in seconds since 1970.
    static constexpr long modified = 1'000'000'000;

    /// Mounted at `path` until the end, when those who wait get an error.
    explicit SilentVolume(std::string path);
    ~SilentVolume();
    SilentVolume(SilentVolume const&) = delete;
    SilentVolume& operator=(SilentVolume const&) = delete;

    /// False where the system has no file systems of its users.
    bool isMounted() const { return isMounted_; }

    /// Whoever waits gets an answer, and everybody after that.
    void answer();

    /// Whoever waits gets an error, and everybody after that. Any thread.
    void hangUp();

private:
    std::string path_;
    int connection_;
    int endOfAnswers_;
    bool isMounted_ = false;
    std::thread server_;
};

/// Ends a test that would hang: the volume hangs up when the scope lasts much longer than anybody is patient.
class Rescue {
public:
    explicit Rescue(SilentVolume& volume);
    /// Fails the test when it was needed.
    ~Rescue();
    Rescue(Rescue const&) = delete;
    Rescue& operator=(Rescue const&) = delete;

private:
    int end_;
    bool wasNeeded_ = false;
    std::thread watch_;
};

/// The threads of this process.
int threadCount();

}
