#pragma once

#include <unistd.h>

namespace VX
{

/// Owns a file descriptor, which may be -1 for none.
class FileDescriptor
{
public:
    explicit FileDescriptor(int descriptor)
        : descriptor_(descriptor)
    {
    }

    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    ~FileDescriptor()
    {
        if (isOpen())
            ::close(descriptor_);
    }

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

    [[nodiscard]] int get() const { return descriptor_; }

private:
    int descriptor_;
};

} // namespace VX
