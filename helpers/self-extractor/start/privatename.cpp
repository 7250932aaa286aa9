// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/privatename.h"

namespace sfx {

namespace {

// FNV-1a (Fowler, Noll, Vo), 64 bits, from two different beginnings.
class NameHash
{
public:
    void add(unsigned char byte)
    {
        m_first = (m_first ^ byte) * prime;
        m_second = (m_second ^ byte) * prime;
    }
    void add(std::uint64_t number)
    {
        for (unsigned shift = 0; shift < 64; shift += 8) {
            add(static_cast<unsigned char>(number >> shift));
        }
    }
    void add(const Text &text)
    {
        for (std::size_t i = 0; i < text.size(); ++i) {
            const char16_t unit = text.data()[i];
            const bool small = unit >= u'a' && unit <= u'z';
            const auto folded = static_cast<unsigned>(small ? unit - 0x20 : unit);
            add(static_cast<unsigned char>(folded));
            add(static_cast<unsigned char>(folded >> 8));
        }
        add(std::uint64_t{text.size()});
    }
    unsigned char byte(std::size_t index) const
    {
        const std::uint64_t from = index < 8 ? m_first : m_second;
        return static_cast<unsigned char>(from >> (56 - 8 * (index % 8)));
    }

private:
    static constexpr std::uint64_t prime = 0x100000001b3;

    std::uint64_t m_first = 0xcbf29ce484222325;
    std::uint64_t m_second = 0x84222325cbf29ce4;
};

} // namespace

void hashProducedFile(const ProducedFile &file, unsigned char (&bytes)[privateNameBytes])
{
    NameHash hash;
    hash.add(file.size);
    hash.add(file.modified);
    hash.add(file.path);
    hash.add(file.rights);
    for (std::size_t i = 0; i < privateNameBytes; ++i) {
        bytes[i] = hash.byte(i);
    }
}

bool makePrivateName(const unsigned char (&bytes)[privateNameBytes], Text &name)
{
    return name.assign(privatePrefix, textLength(privatePrefix))
        && appendHexadecimal(name, bytes, privateNameBytes);
}

} // namespace sfx
