// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/filesink.h"

#include "helpers/self-extractor/archive/shortname.h"
#include "helpers/self-extractor/start/heldfile.h"
#include "helpers/self-extractor/start/winpath.h"
#include "helpers/self-extractor/windows/diskspace.h"
#include "helpers/self-extractor/windows/interrupt.h"

namespace sfx {

namespace {

// Smaller files are written in one piece anyway.
constexpr std::uint64_t leastPreallocated = 1024 * 1024;

// Opens a file that already exists. A scanner may look into it just now.
HANDLE openAgain(const Text &path)
{
    const auto open = [&path] {
        return CreateFileW(wide(path.data()), GENERIC_WRITE,
                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                           OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    };
    for (const unsigned pause : holderPauses) {
        const HANDLE file = open();
        if (file != INVALID_HANDLE_VALUE || !isHeldByAnother(GetLastError())) {
            return file;
        }
        Sleep(pause);
    }
    return open();
}

// Gives the file its final length, which avoids fragments and finds a full disk early. Not all file
// systems support it.
bool preallocate(HANDLE file, std::uint64_t size)
{
    FILE_END_OF_FILE_INFO info = {};
    info.EndOfFile.QuadPart = static_cast<LONGLONG>(size);
    if (SetFileInformationByHandle(file, FileEndOfFileInfo, &info, sizeof info)
        || !isDiskFull(GetLastError())) {
        return true;
    }
    SetLastError(diskHoldsFileOf(file, size) ? ERROR_DISK_FULL : ERROR_FILE_TOO_LARGE);
    return false;
}

} // namespace

void setTimeAndAttributes(HANDLE file, const Entry &entry)
{
    FILE_BASIC_INFO info = {};
    if (entry.hasModified) {
        info.LastWriteTime.QuadPart = static_cast<LONGLONG>(entry.modified);
    }
    // A new file has the archive attribute.
    const bool hasThem = !entry.isFolder && entry.attributes == FILE_ATTRIBUTE_ARCHIVE;
    info.FileAttributes = hasThem ? 0 : entry.attributes; // 0: leave unchanged
    SetFileInformationByHandle(file, FileBasicInfo, &info, sizeof info);
}

Status FileSink::fail()
{
    const DWORD error = GetLastError();
    const Locked lock(m_common.monitor);
    if (m_common.error == 0) {
        m_common.error = error;
        // The part after the folder, with the separator. Without memory for it the message says
        // less.
        static_cast<void>(
            m_common.failedPath.append(m_folder)
            && m_common.failedPath.append(m_path.data() + m_base - 1, m_path.size() - m_base + 1));
    }
    if (!isDiskFull(error)) {
        return Status::WriteFailed;
    }
    if (m_common.missing == 0) {
        m_common.missing = missingSpace(m_folder, m_common.left);
    }
    return Status::DiskFull;
}

bool FileSink::locate(const Entry &entry)
{
    if (!toExtendedPath(m_folder, m_path) || !m_path.append(u"\\")) {
        return false;
    }
    m_base = m_path.size();
    return appendArchivePath(m_path, entry.path, entry.pathSize);
}

// The file is not shared and closed once, so a scanner cannot look into it before it is complete.
bool FileSink::createFile(const Entry &file)
{
    const bool exists = file.size != 0 && couldBeShortName(file.path, file.pathSize);
    m_file.reset(exists ? openAgain(m_path)
                        : CreateFileW(wide(m_path.data()), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    return static_cast<bool>(m_file);
}

bool FileSink::createFolder()
{
    return CreateDirectoryW(wide(m_path.data()), nullptr) || GetLastError() == ERROR_ALREADY_EXISTS;
}

// Creates the folders above the current path, starting inside the application's folder.
bool FileSink::makeParents()
{
    char16_t *path = const_cast<char16_t *>(m_path.data());
    for (std::size_t i = m_base; i < m_path.size(); ++i) {
        if (path[i] != u'\\') {
            continue;
        }
        path[i] = 0;
        const bool made = createFolder();
        path[i] = u'\\';
        if (!made) {
            return false;
        }
    }
    return true;
}

Status FileSink::begin(std::uint64_t totalBytes, std::uint32_t)
{
    m_common.left = totalBytes;
    m_common.missing = missingSpace(m_folder, totalBytes);
    if (m_common.missing == 0) {
        return Status::Ok;
    }
    return m_common.failedPath.append(m_folder) ? Status::DiskFull : Status::NoMemory;
}

Status FileSink::makeFolder(const Entry &folder)
{
    if (!locate(folder)) {
        return Status::NoMemory;
    }
    if (createFolder()
        || (GetLastError() == ERROR_PATH_NOT_FOUND && makeParents() && createFolder())) {
        return Status::Ok;
    }
    return fail();
}

Status FileSink::beginFile(const Entry &file)
{
    if (isInterrupted()) {
        return Status::Interrupted;
    }
    if (!locate(file)) {
        return Status::NoMemory;
    }
    if (!createFile(file)
        && (GetLastError() != ERROR_PATH_NOT_FOUND || !makeParents() || !createFile(file))) {
        return fail();
    }
    if (file.size >= leastPreallocated && !preallocate(m_file.get(), file.size)) {
        return fail();
    }
    return Status::Ok;
}

Status FileSink::write(const std::uint8_t *data, std::size_t size)
{
    if (isInterrupted()) {
        return Status::Interrupted;
    }
    while (size != 0) {
        DWORD written = 0;
        const DWORD piece = size < (1u << 30) ? static_cast<DWORD>(size) : (1u << 30);
        if (!WriteFile(m_file.get(), data, piece, &written, nullptr)) {
            return fail();
        }
        if (written == 0) { // some file systems report a full disk like this
            SetLastError(ERROR_DISK_FULL);
            return fail();
        }
        data += written;
        size -= written;
        m_common.left -= written;
    }
    return Status::Ok;
}

Status FileSink::endFile(const Entry &file)
{
    // An empty file may be opened again, so it is closed at once.
    if (m_closer && file.size != 0) {
        m_closer->close(m_file, file);
    } else {
        setTimeAndAttributes(m_file.get(), file);
        m_file.reset();
    }
    return Status::Ok;
}

Owned<UnpackSink> FileSink::another()
{
    return makeOwned<FileSink>(m_folder, m_closer, m_common);
}

Status FileSink::finishFolder(const Entry &folder)
{
    if (m_closer) {
        m_closer->finish();
    }
    if (!locate(folder)) {
        return Status::NoMemory;
    }
    // For this right alone, Windows does not compare what others share: there is no violation.
    const Handle handle(
        CreateFileW(wide(m_path.data()), FILE_WRITE_ATTRIBUTES,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                    FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (handle) {
        setTimeAndAttributes(handle.get(), folder);
    }
    return Status::Ok;
}

} // namespace sfx
