// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/fuzz/programfile.h"

#include "tests/fuzz/require.h"

#include <fstream>
#include <unistd.h>

using namespace pe;

namespace {

// A folder for this process only.
class Folder
{
public:
    Folder()
    {
        const std::filesystem::path memory("/dev/shm");
        std::error_code error;
        m_path = std::filesystem::is_directory(memory, error)
            ? memory
            : std::filesystem::temp_directory_path();
        m_path /= "kestrelpack-fuzz-" + std::to_string(getpid());
        std::filesystem::create_directories(m_path);
    }
    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path &path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

const std::filesystem::path &folder()
{
    static const Folder made;
    return made.path();
}

std::u16string labelOf(const ResourceKey &key)
{
    if (key.name) {
        return u'"' + *key.name + u'"';
    }
    const std::string id = std::to_string(key.id);
    return std::u16string(id.begin(), id.end());
}

void collect(const File &file, const PeHeaders &headers, const ResourceDirectory &directory,
             const std::u16string &path, ProgramLooks &looks)
{
    for (const ResourceEntry &entry : directory.entries) {
        const std::u16string label = path + u'/' + labelOf(entry.key);
        if (entry.directory) {
            collect(file, headers, *entry.directory, label, looks);
            continue;
        }
        const auto content = readResource(file, headers, entry.data, 1u << 20);
        if (!content.hasError()) {
            looks.others[label] = content.value();
        }
    }
}

bool sectionsAreApart(const PeHeaders &headers)
{
    const auto &sections = headers.sections();
    for (std::size_t i = 0; i < sections.size(); ++i) {
        if (sections[i].hasRawData() && sections[i].rawPointer < headers.sizeOfHeaders()) {
            return false;
        }
        for (std::size_t k = 0; k < i; ++k) {
            if (sections[i].hasRawData() && sections[k].hasRawData()
                && sections[i].rawPointer < sections[k].rawEnd()
                && sections[k].rawPointer < sections[i].rawEnd()) {
                return false;
            }
        }
    }
    return true;
}

} // namespace

ProgramFile::ProgramFile(ByteView content) : m_path(folder() / "program.exe")
{
    std::ofstream file(m_path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char *>(content.data()),
               static_cast<std::streamsize>(content.size()));
    require(file.good(), "the input can be written");
}

ProgramFile::~ProgramFile()
{
    std::error_code ignored;
    std::filesystem::remove(m_path, ignored);
}

Bytes ProgramFile::content() const
{
    const auto file = File::open(path(), File::Access::Read);
    require(!file.hasError(), "the file is there");
    return file.value().readAt(0, static_cast<std::size_t>(file.value().size())).value();
}

std::optional<ProgramLooks> ProgramLooks::of(const ProgramFile &program)
{
    const auto file = File::open(program.path(), File::Access::Read);
    if (file.hasError()) {
        return std::nullopt;
    }
    const auto headers = PeHeaders::read(file.value());
    if (headers.hasError()) {
        return std::nullopt;
    }
    const auto tree = readResourceTree(file.value(), headers.value());
    if (tree.hasError()) {
        return std::nullopt;
    }
    ProgramLooks looks;
    looks.isSound = sectionsAreApart(headers.value());
    const std::uint64_t end = headers.value().imageEnd();
    if (end < file.value().size()) {
        const auto length = static_cast<std::size_t>(file.value().size() - end);
        looks.appended = file.value().readAt(end, length).value();
    }
    if (tree.value()) {
        for (const ResourceEntry &type : tree.value()->root.entries) {
            const bool isIcon = !type.key.name
                && (type.key.id == iconType || type.key.id == groupIconType);
            looks.hasGroup = looks.hasGroup || (!type.key.name && type.key.id == groupIconType);
            if (!isIcon && type.directory) {
                collect(file.value(), headers.value(), *type.directory, labelOf(type.key), looks);
            }
        }
    }
    return looks;
}
