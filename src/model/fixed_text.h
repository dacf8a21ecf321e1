// Copying into the fixed-size, NUL-terminated arrays of the records and the
// store: at most size-1 characters, always terminated; null reads as "".
//
// Threads: plain functions on the caller's buffers; any thread.
#pragma once

#include <cstring>

inline void copyText(char* dst, const char* src, size_t size) {
    if (size == 0) return;
    size_t n = src ? strnlen(src, size - 1) : 0;
    memcpy(dst, src ? src : "", n);
    dst[n] = '\0';
}

template <size_t N> inline void copyText(char (&dst)[N], const char* src) { copyText(dst, src, N); }
