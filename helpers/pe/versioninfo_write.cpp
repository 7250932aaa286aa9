// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/versioninfo.h"

#include "helpers/pe/resourcetree.h"

#include <algorithm>

namespace pe {

namespace {

enum NodeType : std::uint16_t { Binary = 0, Text = 1 };

class VersionWriter
{
public:
    Bytes write(const VersionInfo &info)
    {
        const std::size_t root = begin(u"VS_VERSION_INFO", Binary);
        if (info.fixed) {
            writeFixed(*info.fixed);
            setValueLength(root, m_out.size() - m_valueBegin);
        }
        if (!info.tables.empty()) {
            const std::size_t block = begin(u"StringFileInfo", Text);
            for (const VersionTable &table : info.tables) {
                writeTable(table);
            }
            end(block);
        }
        if (!info.translations.empty()) {
            writeTranslations(info.translations);
        }
        end(root);
        return std::move(m_out);
    }

private:
    // Returns the structure's position.
    std::size_t begin(const std::u16string &key, NodeType type)
    {
        pad();
        const std::size_t position = m_out.size();
        m_out.resize(position + 6);
        write16(m_out, position + 4, type);
        append(key);
        pad();
        m_valueBegin = m_out.size();
        return position;
    }

    void end(std::size_t position)
    {
        write16(m_out, position, static_cast<std::uint16_t>(m_out.size() - position));
    }

    void setValueLength(std::size_t position, std::size_t length)
    {
        write16(m_out, position + 2, static_cast<std::uint16_t>(length));
    }

    void writeFixed(const FixedVersion &fixed)
    {
        append32(0xfeef04bd);
        append32(fixed.structVersion);
        append(fixed.file);
        append(fixed.product);
        for (const std::uint32_t field :
             {fixed.flagsMask, fixed.flags, fixed.system, fixed.type, fixed.subtype}) {
            append32(field);
        }
        append(fixed.date);
    }

    void writeTable(const VersionTable &table)
    {
        const std::size_t position = begin(table.key, Text);
        for (const VersionString &string : table.strings) {
            const std::size_t row = begin(string.name, Text);
            append(string.value);
            setValueLength(row, string.value.size() + 1);
            end(row);
        }
        end(position);
    }

    void writeTranslations(const std::vector<VersionTranslation> &translations)
    {
        const std::size_t block = begin(u"VarFileInfo", Text);
        const std::size_t var = begin(u"Translation", Binary);
        for (const VersionTranslation &translation : translations) {
            append16(translation.language);
            append16(translation.codePage);
        }
        setValueLength(var, 4 * translations.size());
        end(var);
        end(block);
    }

    void pad() { m_out.resize(alignUp(m_out.size(), 4)); }

    void append16(std::uint16_t value)
    {
        m_out.resize(m_out.size() + 2);
        write16(m_out, m_out.size() - 2, value);
    }

    void append32(std::uint32_t value)
    {
        m_out.resize(m_out.size() + 4);
        write32(m_out, m_out.size() - 4, value);
    }

    void append(const std::u16string &text) // with the NUL
    {
        for (const char16_t unit : text) {
            append16(unit);
        }
        append16(0);
    }

    void append(const VersionNumber &number)
    {
        for (const std::size_t index : {1U, 0U, 3U, 2U}) {
            append16(number[index]);
        }
    }

    Bytes m_out;
    std::size_t m_valueBegin = 0; // of the structure that was begun last
};

bool isNamed(const VersionString &string, const std::u16string &name)
{
    return upperCased(string.name) == upperCased(name);
}

} // namespace

Result<Bytes> writeVersionInfo(const VersionInfo &info)
{
    Bytes bytes = VersionWriter().write(info);
    if (bytes.size() > maxVersionSize) {
        return Error{ErrorKind::NoRoom, "the version information is larger than 64 KiB"};
    }
    return bytes;
}

void setVersionString(VersionInfo &info, const std::u16string &name, const std::u16string &value)
{
    if (info.tables.empty()) {
        info.tables.push_back({u"000004b0", {}}); // 1200: Unicode
        info.translations.push_back({0, 1200});
    }
    for (VersionTable &table : info.tables) {
        const auto found
            = std::find_if(table.strings.begin(), table.strings.end(),
                           [&](const VersionString &string) { return isNamed(string, name); });
        if (found == table.strings.end()) {
            table.strings.push_back({name, value});
        } else {
            found->value = value;
        }
    }
}

void removeVersionString(VersionInfo &info, const std::u16string &name)
{
    for (VersionTable &table : info.tables) {
        std::erase_if(table.strings,
                      [&](const VersionString &string) { return isNamed(string, name); });
    }
}

std::optional<VersionNumber> versionNumberOf(std::u16string_view text)
{
    VersionNumber number{};
    std::size_t at = 0;
    for (std::size_t part = 0; part < number.size(); ++part) {
        const std::size_t begin = at;
        std::uint32_t value = 0;
        for (; at < text.size() && text[at] >= u'0' && text[at] <= u'9' && at - begin < 5; ++at) {
            value = 10 * value + (text[at] - u'0');
        }
        if (at == begin || value > 0xffff) {
            return std::nullopt;
        }
        number[part] = static_cast<std::uint16_t>(value);
        if (at == text.size()) {
            return number;
        }
        if (text[at] != u'.') {
            return std::nullopt;
        }
        ++at;
    }
    return std::nullopt; // a fifth part, or a dot at the end
}

} // namespace pe
