// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/windows-kit/row.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

// Products, and what the probe in them has seen.
namespace kit {

struct Entry
{
    std::wstring name; // with slashes
    std::string content;
    std::uint32_t attributes = 0x20; // FILE_ATTRIBUTE_ARCHIVE
};

// A product with this archive. Returns false if it cannot be written.
bool writeProduct(const Place &place, const std::wstring &path, const std::wstring &program,
                  const std::string &archive);
// A product with these files, stored without compression.
bool writeProduct(const Place &place, const std::wstring &path, const std::wstring &program,
                  const std::vector<Entry> &entries);
// The files of the usual product: the probe and data.txt, whose first line is `dataLine`.
std::vector<Entry> probeEntries(const Place &place);
inline const std::string dataLine = "the data of the probe";

// What the header says; the numbers are those of the header.
enum class Kind : char { Desktop = 2, Console = 3 };

// Puts the usual product into the row's folder: the one that the packer has made, or one made here.
// It becomes a program of this kind. Returns its path, or an empty text on failure.
std::wstring placeProduct(const Place &place, Kind kind = Kind::Desktop);

// Starts `product`, which has the probe and data.txt, and expects that it runs with its data and
// leaves nothing.
Result runsAndLeavesNothing(const Place &place, const std::wstring &product);

// Makes a folder, and makes it the temporary folder of all that the row starts. Returns false if it
// cannot be made.
bool moveTemp(Place &place, const std::wstring &folder);

// What the probe has written; see probe.cpp for the keys.
class Notes
{
public:
    Notes() = default;
    explicit Notes(const std::wstring &path);
    bool isThere() const { return !m_values.empty(); }
    std::string operator[](const std::string &key) const;
    unsigned long id() const; // of the process; 0 if it is not there

private:
    std::map<std::string, std::string> m_values;
};

// Sets the environment for probes: their notes go to `path`, and --wait waits for the event, until
// release() or the end of the object.
class ProbeControl
{
public:
    explicit ProbeControl(const Place &place, const std::wstring &name = L"notes.txt");
    ProbeControl(const ProbeControl &) = delete;
    ProbeControl &operator=(const ProbeControl &) = delete;
    ~ProbeControl();

    void release();
    const std::wstring &path() const { return m_path; }
    Notes notes() const { return Notes(m_path); }
    // Waits until the probe has written its notes, or `process` has ended without.
    Notes waitForNotes(const class Process &process) const;
    Notes waitForChild() const;

private:
    std::wstring m_path;
    void *m_event = nullptr;
};

// The private folders and lock files in the row's temporary folder.
std::vector<std::wstring> leftovers(const Place &place);
// Returns true if no module holds its lock file in the row's temporary folder any more.
bool areModulesGone(const Place &place);
// The private folder of a running or ended product: the one above its KESTRELPACK_DIR.
std::wstring privateFolder(const Notes &notes);

} // namespace kit
