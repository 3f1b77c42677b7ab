// Strings and arrays as the platform lends them to a callback: each in memory of its
// own, of exactly the size needed, freed when the callback has returned. Memory checkers
// then detect a plugin that keeps a pointer or reads beyond the end.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::host {

/// A string with its terminator.
class LentText {
public:
    /// In memory of at least `atLeast` bytes, the rest of them zero.
    explicit LentText(std::string_view text, std::size_t atLeast = 0)
        : m_text(new char[std::max(text.size() + 1, atLeast)]()) {
        std::copy(text.begin(), text.end(), m_text.get());
    }

    char* get() const { return m_text.get(); }

private:
    std::unique_ptr<char[]> m_text;
};

/// An array of strings; a null pointer if it is empty.
class LentTexts {
public:
    explicit LentTexts(const std::vector<std::string>& texts)
        : m_texts(texts.begin(), texts.end()), m_pointers(texts.size()) {
        std::transform(m_texts.begin(), m_texts.end(), m_pointers.begin(),
                       [](const LentText& text) { return text.get(); });
    }

    char** get() { return m_pointers.data(); }
    int count() const { return static_cast<int>(m_pointers.size()); }

private:
    std::vector<LentText> m_texts;
    std::vector<char*> m_pointers;
};

/// Bytes without a terminator; a null pointer if there are none.
class LentBytes {
public:
    explicit LentBytes(const std::vector<char>& bytes) : m_bytes(bytes.begin(), bytes.end()) {}

    char* get() { return m_bytes.data(); }
    int count() const { return static_cast<int>(m_bytes.size()); }

private:
    std::vector<char> m_bytes;
};

}  // namespace corvane::host
