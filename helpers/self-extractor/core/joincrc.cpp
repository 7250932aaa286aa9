// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/core/joincrc.h"

namespace sfx {

namespace {

// A CRC is a polynomial over GF(2) modulo this one; bit 31 is the coefficient of x^0.
constexpr std::uint32_t modulus = 0xedb88320;
constexpr std::uint32_t one = 0x80000000;
constexpr std::uint32_t xToThe8 = one >> 8;

std::uint32_t multiply(std::uint32_t a, std::uint32_t b)
{
    std::uint32_t product = 0;
    for (std::uint32_t bit = one; bit != 0; bit >>= 1) {
        if ((a & bit) != 0) {
            product ^= b;
        }
        b = (b >> 1) ^ ((b & 1) != 0 ? modulus : 0);
    }
    return product;
}

} // namespace

// As many zero bytes behind the first stretch as the second has multiply its CRC by x^8 each; the
// inversions at the start and the end of a CRC cancel out.
std::uint32_t joinCrc(std::uint32_t first, std::uint32_t second, std::uint64_t secondSize)
{
    std::uint32_t factor = one;
    std::uint32_t square = xToThe8;
    for (; secondSize != 0; secondSize >>= 1) {
        if ((secondSize & 1) != 0) {
            factor = multiply(factor, square);
        }
        square = multiply(square, square);
    }
    return multiply(factor, first) ^ second;
}

} // namespace sfx
