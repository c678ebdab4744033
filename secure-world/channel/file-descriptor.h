// An open file that closes itself.
#ifndef VAULTPAD_SECURE_WORLD_CHANNEL_FILE_DESCRIPTOR_H
#define VAULTPAD_SECURE_WORLD_CHANNEL_FILE_DESCRIPTOR_H

#include <unistd.h>

#include <utility>

namespace vaultpad::secureworld {

class FileDescriptor {
public:
    FileDescriptor() = default;
    // Takes ownership; -1 for none.
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }

    int get() const { return descriptor_; }
    bool valid() const { return descriptor_ >= 0; }

private:
    int descriptor_ = -1;
};

}  // namespace vaultpad::secureworld

#endif
