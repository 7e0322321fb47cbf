/*
 * zvpcore: the allocator that libzvpvcmx uses for the few records that it allocates for a caller.
 *
 * Both functions are ordinary dynamic symbols: a program that defines its own zvpMalloc and zvpFree is called instead.
 */
#ifndef ZVPCORE_H
#define ZVPCORE_H

#include <stddef.h>

#if defined(__GNUC__)
#define ZVPCORE_API __attribute__((visibility("default")))
#else
#define ZVPCORE_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/**
 * Allocates memory aligned to 64 bytes.
 *
 * @param[in] length  size of the block in bytes
 * @return the block, its content undefined, to be given back with zvpFree(); null when length is 0 or memory is short.
 */
ZVPCORE_API void *zvpMalloc(size_t length);

/**
 * Gives back a block of zvpMalloc().
 *
 * @param[in] pointer  a block that zvpMalloc() returned and that has not been freed, or null, which does nothing
 */
ZVPCORE_API void zvpFree(void *pointer);

#ifdef __cplusplus
}
#endif

#endif /* ZVPCORE_H */
