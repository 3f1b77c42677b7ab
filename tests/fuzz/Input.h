// What a fuzz target makes its values of, and how it says that a property doesn't hold.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

/// Ends the process, which is what makes a finding.
#define REQUIRE(holds)                                                               \
    do {                                                                             \
        if (!(holds)) {                                                              \
            std::fprintf(stderr, "%s:%d: not so: %s\n", __FILE__, __LINE__, #holds); \
            std::abort();                                                            \
        }                                                                            \
    } while (false)

/// Reads values from the front of the bytes; behind their end everything is zero.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

    bool isEmpty() const { return m_size == 0; }

    std::uint8_t byte() { return number<std::uint8_t>(); }

    bool flag() { return (byte() & 1) != 0; }

    /// From 0 to `most`.
    unsigned upTo(unsigned most) { return byte() % (most + 1); }

    template <typename Number>
    Number number() {
        Number value{};
        const auto taken = take(sizeof value);
        std::memcpy(&value, taken.data(), taken.size());
        return value;
    }

    /// Up to 255 bytes of any kind, behind a byte that tells how many.
    std::string bytes() { return take(byte()); }

    /// The same without zeros, as a C string is.
    std::string text() {
        auto text = bytes();
        std::erase(text, '\0');
        return text;
    }

    std::string rest() { return take(m_size); }

private:
    std::string take(std::size_t wanted) {
        const std::size_t size = wanted < m_size ? wanted : m_size;
        std::string taken(reinterpret_cast<const char*>(m_data), size);
        m_data += size;
        m_size -= size;
        return taken;
    }

    const std::uint8_t* m_data;
    std::size_t m_size;
};

/// What libFuzzer, and Replay.cpp in its place, calls.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
