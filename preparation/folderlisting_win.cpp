// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/folderlisting.h"

#include "helpers/pe/nativepath.h"
#include "platform/filenamecase.h"
#include "platform/nativepath.h"
#include "preparation/folderwalk.h"
#include "preparation/reparsekind.h"

#include <string>

#include <windows.h>

namespace {

class Handle
{
public:
    explicit Handle(HANDLE handle) : m_handle(handle) {}
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;
    ~Handle()
    {
        if (isValid()) {
            CloseHandle(m_handle);
        }
    }
    bool isValid() const { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return m_handle; }

private:
    HANDLE m_handle;
};

QString systemText(DWORD error)
{
    return qt_error_string(static_cast<int>(error));
}

// In 100 ns since 1970; FILETIME counts from 1601.
qint64 timeOf(const FILETIME &time)
{
    constexpr qint64 from1601to1970 = 116444736000000000;
    return static_cast<qint64>((static_cast<quint64>(time.dwHighDateTime) << 32)
                               | time.dwLowDateTime)
        - from1601to1970;
}

// Returns the path without links, or an empty text; then GetLastError() says why.
std::wstring resolved(const std::wstring &path)
{
    const Handle file(CreateFileW(path.c_str(), 0,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    if (!file.isValid()) {
        return {};
    }
    std::wstring final(32768, L'\0');
    const DWORD size
        = GetFinalPathNameByHandleW(file.get(), final.data(), static_cast<DWORD>(final.size()), 0);
    final.resize(size < final.size() ? size : 0);
    return final;
}

// Opens the file as the archiver does, which fails if another program is writing to it. A file in the
// cloud is not downloaded for that.
DWORD readingError(const std::wstring &path)
{
    const Handle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_OPEN_NO_RECALL, nullptr));
    return file.isValid() ? ERROR_SUCCESS : GetLastError();
}

// Paths have the form without a length limit.
class Listing : private FolderWalk<std::wstring>
{
public:
    explicit Listing(const QString &folder)
        : m_folder(pe::extendedPath(toNativePath(folder)))
        , m_root(resolved(m_folder))
        , m_rootError(m_root.empty() ? GetLastError() : ERROR_SUCCESS)
    {
    }

    SourceListing run(const std::function<bool()> &isStopped)
    {
        walk(m_folder, isStopped, [this](const OpenFolder &folder) { list(folder); });
        return m_listing;
    }

private:
    void list(const OpenFolder &folder)
    {
        const bool hasSeparator = folder.path.ends_with(L'\\'); // a drive's root
        const std::wstring prefix = hasSeparator ? folder.path : folder.path + L'\\';
        WIN32_FIND_DATAW found;
        HANDLE search = FindFirstFileExW((prefix + L'*').c_str(), FindExInfoBasic, &found,
                                         FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
        if (search == INVALID_HANDLE_VALUE) {
            if (GetLastError() != ERROR_FILE_NOT_FOUND) { // an empty drive
                fail(folder, systemText(GetLastError()));
            }
            return;
        }
        do {
            const std::wstring name = found.cFileName;
            if (name != L"." && name != L"..") {
                add(folder, prefix + name, found);
            }
        } while (FindNextFileW(search, &found));
        const DWORD error = GetLastError();
        FindClose(search);
        if (error != ERROR_NO_MORE_FILES) {
            fail(folder, systemText(error));
        }
    }

    void add(const OpenFolder &folder, const std::wstring &path, const WIN32_FIND_DATAW &found)
    {
        SourceEntry entry;
        const QString name = QString::fromWCharArray(found.cFileName);
        entry.path = folder.inside.isEmpty() ? name : folder.inside + '/' + name;
        entry.kind = kindOfWindowsEntry(found.dwFileAttributes, found.dwReserved0);
        entry.modified = timeOf(found.ftLastWriteTime);
        entry.attributes = found.dwFileAttributes;
        entry.mustNotBeLinked
            = (found.dwFileAttributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_REPARSE_POINT))
            != 0;
        if (entry.kind == SourceEntry::Kind::Link) {
            describeTarget(entry, path);
        } else if (entry.kind == SourceEntry::Kind::File) {
            entry.size = (static_cast<qint64>(found.nFileSizeHigh) << 32) | found.nFileSizeLow;
            const DWORD error = readingError(path);
            if (error != ERROR_SUCCESS) {
                entry.kind = SourceEntry::Kind::Unreadable;
                entry.problem = systemText(error);
            }
        }
        m_listing.entries.append(entry);
        if (entry.kind == SourceEntry::Kind::Folder) {
            m_waiting.push_back({path, entry.path, m_listing.entries.size() - 1});
        }
    }

    void describeTarget(SourceEntry &entry, const std::wstring &path) const
    {
        if (m_root.empty()) { // Wine 8 does not know the final name of a long path
            entry.kind = SourceEntry::Kind::Unreadable;
            entry.problem = systemText(m_rootError);
            return;
        }
        const std::wstring target = resolved(path);
        const DWORD error = GetLastError();
        entry.target = QStringLiteral("another place");
        if (target.empty()) {
            if (error == ERROR_ACCESS_DENIED) {
                entry.kind = SourceEntry::Kind::Unreadable;
                entry.problem = systemText(error);
            }
            entry.target = QStringLiteral("a place");
            entry.targetKind = error == ERROR_CANT_RESOLVE_FILENAME ? SourceEntry::Target::Circle
                                                                    : SourceEntry::Target::Missing;
            return;
        }
        const QString root = withoutSeparator(QString::fromStdWString(m_root));
        QString inner = QString::fromStdWString(target);
        const bool isInside
            = fileNameUpperCase(inner + '\\').startsWith(fileNameUpperCase(root + '\\'));
        entry.targetKind = isInside ? SourceEntry::Target::Inside : SourceEntry::Target::Outside;
        entry.target = isInside ? inner.mid(root.size() + 1).replace('\\', '/')
                                : QString::fromStdWString(target);
    }

    static QString withoutSeparator(const QString &path)
    {
        return path.endsWith('\\') ? path.chopped(1) : path;
    }

    const std::wstring m_folder;
    const std::wstring m_root; // without links; empty if the system does not say it
    const DWORD m_rootError;
};

} // namespace

SourceListing listFolder(const QString &folder, const std::function<bool()> &isStopped)
{
    return Listing(folder).run(isStopped);
}
