// The buffers of a copied record. A string comes from the C library, an array and a
// byte buffer from new[]; what allocates stands beside what releases.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace record_buffers {

/// A failed allocation leaves the copy null.
inline char* copyString(const char* text) {
    return strndup(text, strlen(text));
}

inline void freeString(char*& text) {
    free(text);
    text = nullptr;
}

/// `count` null strings for the caller to fill; throws std::bad_alloc.
inline char** newStrings(int count) {
    return new char*[static_cast<std::size_t>(count)]();
}

/// Null where `count` isn't positive; throws std::bad_alloc.
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

/// `length` bytes without a terminator, null where it isn't positive; throws
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
