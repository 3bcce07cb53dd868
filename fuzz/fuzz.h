// What the fuzz targets share: the check of a promise, and input cut into pieces of exact size, so that the sanitizer
// sees every access beyond them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

// Ends the run with the promise that was not kept; the fuzzer then keeps the input.
#define FUZZ_CHECK(PROMISE)                                                                                            \
    do {                                                                                                               \
        if (!(PROMISE)) {                                                                                              \
            fprintf(stderr, "%s:%d: broken promise: %s\n", __FILE__, __LINE__, #PROMISE);                              \
            __builtin_trap();                                                                                          \
        }                                                                                                              \
    } while (0)

// Takes the input apart from its front. What is missing at its end reads as zeros, or as less.
class FuzzInput {
public:
    FuzzInput(const uint8_t *data, size_t size) : m_data(data), m_size(size) {}

    template <typename NUMBER>
    NUMBER Number()
    {
        NUMBER number = 0;
        const size_t size = sizeof number < m_size ? sizeof number : m_size;
        if (size > 0)
            memcpy(&number, m_data, size);
        Skip(size);
        return number;
    }

    // A number from 0 to limit - 1; limit is at most 65536.
    size_t Below(size_t limit) { return Number<uint16_t>() % limit; }

    // At most `size` bytes, in a block of their own.
    std::vector<uint8_t> Bytes(size_t size)
    {
        if (size > m_size)
            size = m_size;
        std::vector<uint8_t> bytes(m_data, m_data + size);
        Skip(size);
        return bytes;
    }

    std::vector<uint8_t> Rest() { return Bytes(m_size); }

    // Up to the end of the line or of the input; a NUL ends it, too, as it ends a line of a file.
    std::string Line()
    {
        std::string line;
        while (m_size > 0) {
            const char c = static_cast<char>(*m_data);
            Skip(1);
            if (c == '\n' || c == '\0')
                break;
            line += c;
        }
        return line;
    }

private:
    void Skip(size_t size)
    {
        m_data += size;
        m_size -= size;
    }

    const uint8_t *m_data;
    size_t m_size;
};

// Whether a text ends within a buffer.
template <size_t SIZE>
bool IsTerminated(const char (&text)[SIZE])
{
    return memchr(text, '\0', SIZE) != nullptr;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);
