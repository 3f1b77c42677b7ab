// Tools of the fuzz targets: a reader that makes values from the fuzzer's bytes, and an assertion.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

/// Aborts the process if the condition is false. The fuzzer reports that as a crash.
#define REQUIRE(holds)                                                               \
    do {                                                                             \
        if (!(holds)) {                                                              \
            std::fprintf(stderr, "%s:%d: not so: %s\n", __FILE__, __LINE__, #holds); \
            std::abort();                                                            \
        }                                                                            \
    } while (false)

/// Reads values from the fuzzer's bytes, front to back. After the end, numbers are zero and texts
/// are empty.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : m_data(data), m_size(size) {}

    bool isEmpty() const { return m_size == 0; }

    std::uint8_t byte() { return number<std::uint8_t>(); }

    bool flag() { return (byte() & 1) != 0; }

    /// Returns a number from 0 to `most`.
    unsigned upTo(unsigned most) { return byte() % (most + 1); }

    template <typename Number>
    Number number() {
        Number value{};
        const auto taken = take(sizeof value);
        std::memcpy(&value, taken.data(), taken.size());
        return value;
    }

    /// Reads a length byte and returns that many bytes, at most 255.
    std::string bytes() { return take(byte()); }

    /// The same without zero bytes, for use as a C string.
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

/// The entry point that libFuzzer, or Replay.cpp instead, calls with each input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
