#pragma once

#include <unistd.h>

#include <utility>

namespace quiverly {

// Owns one open file of the system, or none (-1), and closes it.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : number(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number, other.number);
        other.reset();
        return *this;
    }
    ~FileDescriptor() { reset(); }

    void reset() {
        if (number >= 0) ::close(std::exchange(number, -1));
    }

    int get() const { return number; }
    explicit operator bool() const { return number >= 0; }

private:
    int number = -1;
};

} // namespace quiverly
