#pragma once

// The part of the dynamic loader that Quiverly uses, declared after Apple's published documentation.

#include <stdint.h>

extern "C" {
int _NSGetExecutablePath(char* buf, uint32_t* bufsize);
}
