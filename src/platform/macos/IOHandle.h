#pragma once

#include <IOKit/IOKitLib.h>

namespace quiverly {

// Owns one reference to an object of the registry, or none.
class IOHandle {
public:
    explicit IOHandle(io_object_t object) : object(object) {}
    ~IOHandle() {
        if (object != IO_OBJECT_NULL) IOObjectRelease(object);
    }
    IOHandle(const IOHandle&) = delete;
    IOHandle& operator=(const IOHandle&) = delete;

    io_object_t get() const { return object; }

private:
    io_object_t object;
};

} // namespace quiverly
