#include "support/apple/AppleRuntime.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

// The functions that the compiler calls, after https://clang.llvm.org/docs/AutomaticReferenceCounting.html, in terms of
// void pointers; and what they need of GNU's runtime.
extern "C" {
using Object = void*;
using Method = Object (*)(Object receiver, const void* selector);

Object class_createInstance(const void* theClass, std::size_t extraBytes);
const char* object_getClassName(Object object);
const void* sel_registerName(const char* name);

// The linker leads the calls of these two to functions below (--wrap).
struct Module {
    unsigned long version;
    unsigned long size;
};
void loadModule(Module* module) __asm__("__real___objc_exec_class");
Method lookUp(Object receiver, const void* selector) __asm__("__real_objc_msg_lookup");
void loadModuleOfAnotherRuntime(Module* module) __asm__("__wrap___objc_exec_class");
Method lookUpUnlessGone(Object receiver, const void* selector) __asm__("__wrap_objc_msg_lookup");
}

namespace {

// Of an object that apple_allocate() made. Others, which are classes and the texts in the source, are not counted.
struct Life {
    long references = 1;
    enum { alive, ending, gone } state = alive;
};

std::recursive_mutex mutex; // an object that goes releases others
std::size_t alive = 0;

std::map<Object, Life>& lives() {
    static std::map<Object, Life> lives;
    return lives;
}

thread_local std::vector<std::vector<Object>> pools; // of this thread

// None of one that is not counted, or that is just going.
Life* lifeOf(Object object, const char* use) {
    const auto found = lives().find(object);
    if (found == lives().end()) return nullptr;
    if (found->second.state == Life::gone) {
        std::fprintf(stderr, "stand-ins: %s: %s\n", use, object_getClassName(object));
        std::abort();
    }
    return found->second.state == Life::alive ? &found->second : nullptr;
}

} // namespace

namespace quiverly::apple_runtime {

std::size_t objectsAlive() {
    const std::lock_guard lock(mutex);
    return alive;
}

} // namespace quiverly::apple_runtime

extern "C" {

// A new object with one reference.
Object apple_allocate(const void* theClass) {
    const std::lock_guard lock(mutex);
    const Object object = class_createInstance(theClass, sizeof(void*));
    lives().emplace(object, Life{});
    ++alive;
    return object;
}

// What the compiler emits for the only runtime of ELF systems with automatic reference counting that needs no library
// of its own is what GNU's takes, but for the version that it says and a member at the end of each module.
void loadModuleOfAnotherRuntime(Module* module) {
    module->version = 8;
    module->size = sizeof(Module) + 2 * sizeof(void*);
    loadModule(module);
}

Method lookUpUnlessGone(Object receiver, const void* selector) {
    {
        const std::lock_guard lock(mutex);
        lifeOf(receiver, "a message to an object that is gone");
    }
    return lookUp(receiver, selector);
}

Object objc_retain(Object object) {
    const std::lock_guard lock(mutex);
    if (Life* const life = lifeOf(object, "an object that is gone is retained")) ++life->references;
    return object;
}

void objc_release(Object object) {
    const std::lock_guard lock(mutex);
    Life* const life = lifeOf(object, "an object that is gone is released");
    if (life == nullptr || --life->references > 0) return;
    life->state = Life::ending;
    const void* const dealloc = sel_registerName("dealloc");
    lookUp(object, dealloc)(object, dealloc);
    life->state = Life::gone;
    --alive;
}

void objc_storeStrong(Object* variable, Object object) {
    objc_retain(object);
    objc_release(std::exchange(*variable, object));
}

// Without a pool it is never released, as on a Mac.
Object objc_autorelease(Object object) {
    if (!pools.empty()) pools.back().push_back(object);
    return object;
}

Object objc_autoreleaseReturnValue(Object object) {
    return objc_autorelease(object);
}

Object objc_retainAutorelease(Object object) {
    return objc_autorelease(objc_retain(object));
}

Object objc_retainAutoreleaseReturnValue(Object object) {
    return objc_retainAutorelease(object);
}

Object objc_retainAutoreleasedReturnValue(Object object) {
    return objc_retain(object);
}

void* objc_autoreleasePoolPush() {
    pools.emplace_back();
    return nullptr;
}

void objc_autoreleasePoolPop(void*) {
    while (!pools.back().empty()) {
        const Object object = pools.back().back();
        pools.back().pop_back();
        objc_release(object); // which may leave others to the pool
    }
    pools.pop_back();
}
}
