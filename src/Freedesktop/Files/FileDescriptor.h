#pragma once

#include <unistd.h>
#include <utility>

namespace marrowick {

/// Owns an open file of the process; it may hold none.
class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor)
        : descriptor_(descriptor)
    {
    }
    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, -1))
    {
    }
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~FileDescriptor()
    {
        if (isOpen())
            ::close(descriptor_);
    }

    bool isOpen() const { return descriptor_ >= 0; }
    int get() const { return descriptor_; }

    /// Gives the open file up to the caller.
    int release() { return std::exchange(descriptor_, -1); }

private:
    int descriptor_;
};

}
