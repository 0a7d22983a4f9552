#pragma once

#include <concepts>
#include <functional>
#include <utility>

#include "engine/ChangePublisher.h"

namespace quiverly {

struct Anyone {}; // the writer of a property that everybody may assign

// A property that others observe. It reads like its value. Every write, of an equal value too, first announces the
// change while the old value still stands, then stores the new one, then runs the property's own effect. Only Writer
// can write; what Anyone may write is simply assigned. Main thread only.
template<class T, class Writer = Anyone>
class Published {
public:
    Published(ChangePublisher& publisher, T initial, std::function<void()> effect = {})
        : publisher(publisher), value(std::move(initial)), effect(std::move(effect)) {}
    Published(const Published&) = delete;

    operator const T&() const { return value; }
    const T& get() const { return value; }

    Published& operator=(const Published&) = delete;
    Published& operator=(T next) requires std::same_as<Writer, Anyone> {
        write(std::move(next));
        return *this;
    }

private:
    friend Writer;

    void write(T next) {
        publisher.send(this);
        value = std::move(next);
        if (effect) effect();
    }

    ChangePublisher& publisher;
    T value;
    std::function<void()> effect;
};

} // namespace quiverly
