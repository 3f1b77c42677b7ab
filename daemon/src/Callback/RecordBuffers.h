// Allocates and releases the buffers of a copied record: strings with the C library, arrays and
// byte buffers with new[] and delete[].
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace record_buffers {

/// Returns null if the allocation fails.
inline char* copyString(const char* text) {
    return strndup(text, strlen(text));
}

inline void freeString(char*& text) {
    free(text);
    text = nullptr;
}

/// Returns an array of `count` null strings. Throws std::bad_alloc.
inline char** newStrings(int count) {
    return new char*[static_cast<std::size_t>(count)]();
}

/// Returns null if `count` isn't positive. Throws std::bad_alloc.
inline char** copyStrings(char** strings, int count) {
    if (count <= 0) {
        return nullptr;
    }
    char** copied = newStrings(count);
    for (int i = 0; i < count; ++i) {
        copied[i] = copyString(strings[i]);
    }
    return copied;
}

inline void freeStrings(char** strings, int count) {
    if (strings == nullptr) {
        return;
    }
    for (int i = 0; i < count; ++i) {
        freeString(strings[i]);
    }
    delete[] strings;
}

/// Copies `length` bytes, without a terminator. Returns null if `length` isn't positive. Throws
/// std::bad_alloc.
inline char* copyBytes(const char* bytes, int length) {
    if (length <= 0) {
        return nullptr;
    }
    const auto size = static_cast<std::size_t>(length);
    return static_cast<char*>(memcpy(new char[size], bytes, size));
}

inline void freeBytes(char* bytes) {
    delete[] bytes;
}

}  // namespace record_buffers
