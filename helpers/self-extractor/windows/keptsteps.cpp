// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/keptsteps.h"

#include "helpers/self-extractor/start/heldfile.h"
#include "helpers/self-extractor/windows/fileowner.h"
#include "helpers/self-extractor/windows/interrupt.h"
#include "helpers/self-extractor/windows/keptentries.h"
#include "helpers/self-extractor/windows/keptremoval.h"
#include "helpers/self-extractor/windows/token.h"

namespace sfx {

namespace {

// A start waits this long for another one that unpacks the same application, in milliseconds, until
// it uses a private folder.
constexpr DWORD waitingPause = 20;
constexpr unsigned mostPauses = 10 * 60 * 1000 / waitingPause;
// While the file is being removed, the system says that access is denied.
constexpr unsigned mostDenials = 5;

// Whether the owner of a folder, whose handle has READ_CONTROL, is the user of this process.
bool belongsToUser(HANDLE folder)
{
    HANDLE rawToken = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &rawToken)) {
        return false;
    }
    const Handle token(rawToken);
    const TokenFact<TOKEN_USER> user(token.get(), TokenUser);
    return user && FileOwner(folder).equals((*user).User.Sid);
}

} // namespace

// On Windows, an open folder shows that it is a link, too; Wine opens the target.
bool openBase(const Text &path, SECURITY_ATTRIBUTES *security, Handle &base)
{
    const auto isFolder = [&path] {
        const DWORD attributes = GetFileAttributesW(wide(path.data()));
        return ListedEntry{nullptr, nullptr, 0, attributes}.isFolder();
    };
    return (createFolder(path, security, base) || (isFolder() && guardFolder(path, base)))
        && belongsToUser(base.get());
}

Status waitForTurn(LockFile &lock, const Text &path, SECURITY_ATTRIBUTES *security,
                   const Owned<ProgressWindow> &window)
{
    unsigned denials = 0;
    for (unsigned i = 0; i < mostPauses; ++i) {
        if (lock.acquire(path, security)) {
            return Status::Ok;
        }
        const DWORD error = GetLastError();
        const bool isDenied = error == ERROR_ACCESS_DENIED && ++denials < mostDenials;
        if (!isDenied && !isHeldByAnother(error)) {
            break;
        }
        if (isInterrupted()) {
            return Status::Interrupted;
        }
        if (window && window->isCancelled()) {
            return Status::Cancelled;
        }
        Sleep(waitingPause);
    }
    return Status::WriteFailed;
}

bool clearWay(HANDLE parent, const Text &name, const Text &path, bool removes)
{
    const DWORD attributes = GetFileAttributesW(wide(path.data()));
    const ListedEntry entry{parent, name.data(), name.size(), attributes};
    if (attributes == INVALID_FILE_ATTRIBUTES || entry.isFolder()) {
        return true;
    }
    Handle opened;
    return removes && openEntry(entry, opened) == EntryUse::Free && removeEntry(opened, attributes);
}

bool movePatiently(const Text &from, const Text &to)
{
    const auto move = [&] {
        return MoveFileExW(wide(from.data()), wide(to.data()), 0) != FALSE;
    };
    for (const unsigned pause : holderPauses) {
        if (move()) {
            return true;
        }
        const DWORD error = GetLastError();
        if (error != ERROR_ACCESS_DENIED && !isHeldByAnother(error)) {
            return false;
        }
        Sleep(pause);
    }
    return move();
}

} // namespace sfx
