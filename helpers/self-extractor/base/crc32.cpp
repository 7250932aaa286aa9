// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/base/crc32.h"

#include "7zCrc.h"

#ifdef __x86_64__
#include <cpuid.h>
#include <wmmintrin.h>
#endif

namespace sfx {

namespace {

bool multiplies = false;

#ifdef __x86_64__

#define KESTRELPACK_MULTIPLIES __attribute__((target("pclmul")))

constexpr std::size_t step = 64;

// What the two halves of 128 bits are multiplied by to move on by 512 bits: powers of x modulo the
// polynomial. From V. Gopal and others, "Fast CRC Computation for Generic Polynomials Using
// PCLMULQDQ Instruction", Intel, 2009.
alignas(16) constexpr std::uint64_t powers[2] = {0x154442bd4, 0x1c6e41596};

// Four times 128 bits move through the data side by side, so that no multiplication waits for the
// one before. In the end these 64 bytes have the check sum of all the data. `size` is a multiple of
// 64, and not 0.
KESTRELPACK_MULTIPLIES inline std::uint32_t foldedCrc(std::uint32_t sum, const void *data,
                                                      std::size_t size)
{
    const auto *next = static_cast<const __m128i *>(data);
    const auto *end = next + size / sizeof *next;
    const __m128i factors = _mm_load_si128(reinterpret_cast<const __m128i *>(powers));
    __m128i bits[step / sizeof *next];
    for (__m128i &part : bits) {
        part = _mm_loadu_si128(next++);
    }
    bits[0] = _mm_xor_si128(bits[0], _mm_cvtsi32_si128(static_cast<int>(sum)));
    while (next != end) {
        for (__m128i &part : bits) {
            const __m128i low = _mm_clmulepi64_si128(part, factors, 0x00);
            const __m128i high = _mm_clmulepi64_si128(part, factors, 0x11);
            part = _mm_xor_si128(_mm_loadu_si128(next++), _mm_xor_si128(low, high));
        }
    }
    return CrcUpdate(0, bits, sizeof bits);
}

bool processorMultiplies()
{
    unsigned a;
    unsigned b;
    unsigned c = 0;
    unsigned d;
    __cpuid(1, a, b, c, d);
    return (c & bit_PCLMUL) != 0;
}

#else
#define KESTRELPACK_MULTIPLIES
#endif // __x86_64__

} // namespace

void prepareCrc32()
{
    CrcGenerateTable();
#ifdef __x86_64__
    multiplies = processorMultiplies();
#endif
}

KESTRELPACK_MULTIPLIES std::uint32_t crc32(std::uint32_t sum, const void *data, std::size_t size)
{
    sum = ~sum;
#ifdef __x86_64__
    if (multiplies && size >= step) {
        const std::size_t folded = size & ~(step - 1);
        sum = foldedCrc(sum, data, folded);
        data = static_cast<const std::uint8_t *>(data) + folded;
        size -= folded;
    }
#endif
    return ~CrcUpdate(sum, data, size);
}

} // namespace sfx
