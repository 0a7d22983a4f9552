#include <pthread.h>

#include "support/apple/AppleServices.h"

using quiverly::AppleServices;

int pthread_setname_np(const char* name) {
    AppleServices::threadName() = name;
    return 0;
}

extern "C" {
// The linker leads calls of pthread_join() to the second (--wrap).
int join(pthread_t thread, void** result) __asm__("__real_pthread_join");
int joinAndTell(pthread_t thread, void** result) __asm__("__wrap_pthread_join");

int joinAndTell(pthread_t thread, void** result) {
    const int error = join(thread, result);
    AppleServices::current().calls.emplace_back("join");
    return error;
}
}
