// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/base/sha256.h"

#include <bit>
#include <cstring>

namespace sfx {

namespace {

constexpr std::uint32_t constants[64]
    = {0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4,
       0xab1c5ed5, 0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe,
       0x9bdc06a7, 0xc19bf174, 0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f,
       0x4a7484aa, 0x5cb0a9dc, 0x76f988da, 0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7,
       0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967, 0x27b70a85, 0x2e1b2138, 0x4d2c6dfc,
       0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85, 0xa2bfe8a1, 0xa81a664b,
       0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070, 0x19a4c116,
       0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
       0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7,
       0xc67178f2};

std::uint32_t readBigEndian(const std::uint8_t *bytes)
{
    return (std::uint32_t{bytes[0]} << 24) | (std::uint32_t{bytes[1]} << 16)
        | (std::uint32_t{bytes[2]} << 8) | bytes[3];
}

// The standard's functions, by the amounts that it rotates by.
std::uint32_t rotations(std::uint32_t word, int first, int second, int third)
{
    return std::rotr(word, first) ^ std::rotr(word, second) ^ std::rotr(word, third);
}

std::uint32_t mixed(std::uint32_t word, int first, int second, int shift)
{
    return std::rotr(word, first) ^ std::rotr(word, second) ^ (word >> shift);
}

} // namespace

void Sha256::addBlock()
{
    std::uint32_t words[64];
    for (int i = 0; i < 16; ++i) {
        words[i] = readBigEndian(m_block + 4 * i);
    }
    for (int i = 16; i < 64; ++i) {
        words[i] = words[i - 16] + mixed(words[i - 15], 7, 18, 3) + words[i - 7]
            + mixed(words[i - 2], 17, 19, 10);
    }
    std::uint32_t s[8]; // the standard's a to h
    std::memcpy(s, m_state, sizeof s);
    for (int i = 0; i < 64; ++i) {
        const std::uint32_t chosen = (s[4] & s[5]) ^ (~s[4] & s[6]);
        const std::uint32_t majority = (s[0] & s[1]) ^ (s[0] & s[2]) ^ (s[1] & s[2]);
        const std::uint32_t first = s[7] + rotations(s[4], 6, 11, 25) + chosen + constants[i]
            + words[i];
        const std::uint32_t second = rotations(s[0], 2, 13, 22) + majority;
        for (int k = 7; k > 0; --k) {
            s[k] = s[k - 1];
        }
        s[4] += first;
        s[0] = first + second;
    }
    for (int i = 0; i < 8; ++i) {
        m_state[i] += s[i];
    }
}

void Sha256::add(const void *data, std::size_t size)
{
    const auto *bytes = static_cast<const std::uint8_t *>(data);
    while (size != 0) {
        const std::size_t used = m_size % sizeof m_block;
        const std::size_t room = sizeof m_block - used;
        const std::size_t piece = size < room ? size : room;
        std::memcpy(m_block + used, bytes, piece);
        bytes += piece;
        size -= piece;
        m_size += piece;
        if (piece == room) {
            addBlock();
        }
    }
}

void Sha256::finish(std::uint8_t (&digest)[digestSize])
{
    const std::uint64_t bits = 8 * m_size;
    constexpr std::uint8_t one = 0x80;
    constexpr std::uint8_t zero = 0;
    add(&one, 1);
    while (m_size % sizeof m_block != sizeof m_block - 8) {
        add(&zero, 1);
    }
    for (int shift = 56; shift >= 0; shift -= 8) {
        const auto byte = static_cast<std::uint8_t>(bits >> shift);
        add(&byte, 1);
    }
    for (std::size_t i = 0; i < digestSize; ++i) {
        digest[i] = static_cast<std::uint8_t>(m_state[i / 4] >> (24 - 8 * (i % 4)));
    }
}

} // namespace sfx
