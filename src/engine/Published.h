#pragma once

#include <concepts>
#include <functional>
#include <utility>

#include "engine/ChangePublisher.h"

namespace quiverly {

struct Anyone {}; // the Writer of a property that all may assign

// A property of an object that others observe. It reads like its value.
//
// Every write, of an equal value too, is announced while the old value still stands, to the observers of this property
// and then to those of the whole object; then the new value is stored, and the property's own effect runs. Only Writer
// can write; what Anyone may write is simply assigned. Main thread only.
template<class T, class Writer = Anyone>
class Published {
public:
    Published(ChangePublisher& objectWillChange, T initial, std::function<void()> effect = {})
        : objectWillChange(objectWillChange), value(std::move(initial)), effect(std::move(effect)) {}
    Published(const Published&) = delete;

    ChangePublisher willChange; // of this property alone

    operator const T&() const { return value; }
    const T& get() const { return value; }

    Published& operator=(const Published&) = delete;
    template<std::same_as<Anyone> Assigner = Writer>
    Published& operator=(T next) {
        write(std::move(next));
        return *this;
    }

private:
    friend Writer;

    void write(T next) {
        willChange.send();
        objectWillChange.send();
        value = std::move(next);
        if (effect) effect();
    }

    ChangePublisher& objectWillChange;
    T value;
    std::function<void()> effect;
};

} // namespace quiverly
