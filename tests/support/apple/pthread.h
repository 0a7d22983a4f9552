// The system's, and the function of it that Apple declares otherwise.

#include_next <pthread.h>

#ifndef QUIVERLY_APPLE_PTHREAD_H
#define QUIVERLY_APPLE_PTHREAD_H

#ifdef __cplusplus
int pthread_setname_np(const char* name); // of the calling thread
#endif

#endif
