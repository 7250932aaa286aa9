// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "inspection/report.h"
#include "tests/fuzz/inputsource.h"
#include "tests/fuzz/require.h"
#include "tests/fuzz/sealedarchive.h"
#include "tests/helpers/self-extractor/countedmemory.h"

#include <QJsonArray>
#include <QString>

#include <sys/mman.h>
#include <unistd.h>

#include <vector>

using namespace sfx;

namespace {

constexpr std::size_t memoryLimit = 96u << 20;
constexpr quint64 outputLimit = 4u << 20;

// A file without a place on the disk.
class MemoryFile
{
public:
    explicit MemoryFile(const std::vector<std::uint8_t> &bytes)
        : m_descriptor(memfd_create("product", 0))
    {
        const auto size = static_cast<ssize_t>(bytes.size());
        require(write(m_descriptor, bytes.data(), bytes.size()) == size, "a file can be written");
    }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;
    ~MemoryFile() { close(m_descriptor); }

    QString path() const { return QStringLiteral("/proc/self/fd/%1").arg(m_descriptor); }

private:
    int m_descriptor;
};

// Corrects the check sums of the archive's header, so that more inputs reach what comes after it.
void sealProduct(std::vector<std::uint8_t> &bytes)
{
    InputSource source(bytes.data(), bytes.size());
    StartPlan plan;
    std::uint64_t offset = 0;
    if (readStartPlan(source, plan, offset) == Status::Ok
        && bytes.size() - offset >= startHeaderSize) {
        sealArchive(std::span(bytes).subspan(static_cast<std::size_t>(offset)));
    }
}

bool isNumbered(const Finding &finding)
{
    return finding.number >= 201 && finding.number <= 212 && !finding.text.isEmpty();
}

void checkReport(const QJsonObject &report)
{
    const QJsonArray entries = report["entries"].toArray();
    const QString program = report["start"]["program"].toString();
    qint64 total = 0;
    bool hasProgram = false;
    for (const auto &value : entries) {
        const QJsonObject entry = value.toObject();
        total += entry["size"].toInteger();
        // The case may differ; ASCII is enough here.
        hasProgram = hasProgram
            || (!entry["isFolder"].toBool()
                && entry["path"].toString().compare(program, Qt::CaseInsensitive) == 0);
    }
    require(hasProgram, "the program is in the archive");
    require(total == report["archive"]["unpackedSize"].toInteger(), "sizes add up");
    const QString text = textOf(report);
    require(text.contains("\nstarts") && text.count('\n') >= entries.size(), "the text has it all");
}

void inspect(const QString &path)
{
    ProducedFile file;
    require(file.open(path).isEmpty(), "a file can be opened");
    // The comparison with the bundle's module takes most of the time, so not every input gets it.
    const auto facts = file.size() % 8 == 0 ? programFactsOf(file.file()) : std::nullopt;
    if (const auto finding = file.check()) {
        require(isNumbered(*finding), "a refusal has a reason");
        return;
    }
    FileHashes hashes;
    if (file.totalBytes() <= outputLimit) {
        if (const auto finding = checkContent(file, &hashes)) {
            require(isNumbered(*finding), "damage has a reason");
            hashes.clear();
        }
    }
    checkReport(reportOf(file, facts.value_or(ProgramFacts()), hashes));
}

} // namespace

// A whole produced file of any bytes, with correct check sums of its header.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    std::vector<std::uint8_t> bytes(data, data + size);
    sealProduct(bytes);
    const MemoryFile file(bytes);
    const std::size_t before = countedmemory::inUse();
    countedmemory::reset(memoryLimit);
    inspect(file.path());
    require(countedmemory::inUse() == before, "all memory is given back");
    return 0;
}
