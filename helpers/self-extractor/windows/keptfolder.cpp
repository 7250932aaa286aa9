// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/keptfolder.h"

#include "helpers/self-extractor/start/keptrules.h"
#include "helpers/self-extractor/start/privatename.h"
#include "helpers/self-extractor/windows/filesink.h"
#include "helpers/self-extractor/windows/keptcheck.h"
#include "helpers/self-extractor/windows/keptclearing.h"
#include "helpers/self-extractor/windows/keptentries.h"
#include "helpers/self-extractor/windows/keptpaths.h"
#include "helpers/self-extractor/windows/keptsteps.h"
#include "helpers/self-extractor/windows/ownrights.h"
#include "helpers/self-extractor/windows/profilefolder.h"
#include "helpers/self-extractor/windows/removal.h"
#include "helpers/self-extractor/windows/systemstart.h"
#include "helpers/self-extractor/windows/temporaryfolder.h"
#include "helpers/self-extractor/windows/unpackvisibly.h"
#include "helpers/self-extractor/windows/usefile.h"

namespace sfx {

namespace {

// What a start needs as long as its program runs.
struct KeptState
{
    KeptPaths paths;
    KeptRecord record;
    UseFile use;
    Handle guard; // of the kept folder: as long as it is open, nobody can replace the folder
};

// Looks at the kept folder and makes it ready. While it has the lock file, no other start does so.
class KeptOpening
{
public:
    KeptOpening(KeptState &state, Archive &archive, const Owned<ProgressWindow> &window)
        : m_state(state)
        , m_paths(state.paths)
        , m_archive(archive)
        , m_window(window)
    {
    }

    Status run(const StartPlan &plan);
    // After a failure: if there is no kept folder, nothing of this start stays.
    void leave();

private:
    Status locate(const StartPlan &plan);
    bool fits(const StartPlan &plan) const;
    Status makeReady(bool alwaysCompares);
    Status makeRight(bool isKnown, bool isWhole);
    bool enter(bool repairs);
    Status compare(bool removesWrong);
    Status make();
    Status unpackFresh();
    bool removeFresh();
    Status repair();

    KeptState &m_state;
    KeptPaths &m_paths;
    Archive &m_archive;
    const Owned<ProgressWindow> &m_window;
    KeptTable m_table;
    UserOnly m_security;
    LockFile m_lock;
    Handle m_base;        // the folder that all kept ones lie in
    Handle m_application; // the application's folder; empty if there is none
    bool m_comparesContents = false;
};

bool KeptOpening::fits(const StartPlan &plan) const
{
    Text temporary;
    // Without a temporary folder there is no private one with shorter paths.
    const std::size_t privateFolder = findTemporaryFolder(temporary)
        ? temporary.size() + 3 + 2 * privateNameBytes + 1 + plan.folderName().size()
        : m_paths.application.size();
    return fitsAsWell(m_paths.application.size(), privateFolder, m_table.longestPath());
}

Status KeptOpening::locate(const StartPlan &plan)
{
    Digest digest;
    Text folder;
    Status status = identifyContent(m_archive, plan, digest);
    if (status != Status::Ok) {
        return status;
    }
    if (!findKeptFolders(folder)) {
        return Status::WriteFailed;
    }
    if (!makeKeptName(digest, m_paths.name)
        || !m_paths.make(folder, plan.folderName(), plan.program())) {
        return Status::NoMemory;
    }
    status = m_table.read(m_archive, m_paths.folderName.data());
    if (status == Status::Ok && !fits(plan)) {
        return Status::WriteFailed;
    }
    m_state.record.newest = m_table.newest();
    m_state.record.days = plan.settings.keepDays;
    identifyProduct(plan.settings, m_state.record.product);
    describePaths(m_table.hashes(), m_state.record);
    return status;
}

// In the end the file with the record is shared: then the folder is in use, and stays as it is.
Status KeptOpening::run(const StartPlan &plan)
{
    if (!hasUsersRightsOnly(processRights())) {
        return Status::WriteFailed;
    }
    Status status = locate(plan);
    if (status == Status::Ok) {
        status = openBase(m_paths.base, m_security.attributes(), m_base)
            ? waitForTurn(m_lock, m_paths.lock, m_security.attributes(), m_window)
            : Status::WriteFailed;
    }
    return status == Status::Ok ? makeReady(plan.settings.keepVerify) : status;
}

void KeptOpening::leave()
{
    m_state.guard.reset();
    if (m_lock.handle() != nullptr && !pathExists(m_paths.root) && removeFresh()) {
        m_state.use.discard();
        if (!pathExists(m_paths.use)) {
            m_lock.discard();
        }
    }
    m_state.use.release();
}

// Opens the folders. Returns false if they do not lead to the application's folder.
bool KeptOpening::enter(bool repairs)
{
    m_application.reset();
    m_state.guard.reset();
    return clearWay(m_base.get(), m_paths.name, m_paths.root, repairs)
        && guardFolder(m_paths.root, m_state.guard)
        && clearWay(m_state.guard.get(), m_paths.folderName, m_paths.inside, repairs)
        && guardFolder(m_paths.inside, m_application);
}

// Marks in the table what is right in the application's folder.
Status KeptOpening::compare(bool removesWrong)
{
    m_table.forget();
    return m_application
        ? checkKept(m_application.get(), m_table, {m_comparesContents, removesWrong}, m_window)
        : Status::Ok;
}

Status KeptOpening::makeReady(bool alwaysCompares)
{
    KeptRecord found;
    const bool isKnown = m_state.use.share(m_paths.use) && m_state.use.read(found);
    const bool mustCompare = !isKnown || mustCompareContents(found, systemStart());
    m_comparesContents = mustCompare || alwaysCompares;
    enter(false);
    Status status = compare(false);
    const bool isWhole = m_application && m_table.missing() == 0;
    if (status == Status::Ok && (mustCompare || !isWhole)) {
        m_state.use.release();
        status = makeRight(isKnown, isWhole);
        if (status == Status::Ok && !m_state.use.share(m_paths.use)) {
            return Status::WriteFailed;
        }
    }
    if (status == Status::Ok) {
        m_state.use.setLastUse();
    }
    return status;
}

Status KeptOpening::makeRight(bool isKnown, bool isWhole)
{
    UseFile &use = m_state.use;
    if (!use.claim(m_paths.use, m_security.attributes(), OPEN_ALWAYS)) {
        return isWhole ? Status::Ok : Status::WriteFailed; // a program uses the folder
    }
    // What an earlier run of the system has written has been compared, so it is on the disk. A record
    // that says so must not come back after a power failure when files have been written since.
    m_state.record.written = isKnown && isWhole ? 0 : systemStart();
    if (!use.write(m_state.record, m_table.hashes()) || (isKnown && !isWhole && !use.flush())) {
        return Status::WriteFailed;
    }
    Status status = Status::Ok;
    if (!isWhole) {
        const bool isFolder = enter(true) || m_state.guard;
        const bool isFree = !isFolder && !pathExists(m_paths.root);
        status = isFolder ? repair() : isFree ? make() : Status::WriteFailed;
    }
    if (status == Status::Ok) {
        use.release();
    }
    return status;
}

bool KeptOpening::removeFresh()
{
    constexpr std::uint64_t noDeadline = UINT64_MAX;
    return removeOwnTree(m_paths.fresh, m_lock.handle(), noDeadline);
}

Status KeptOpening::unpackFresh()
{
    Handle fresh;
    Handle inside;
    Text path;
    if (!path.append(m_paths.fresh) || !path.append(u"\\") || !path.append(m_paths.folderName)) {
        return Status::NoMemory;
    }
    if (!removeFresh() || !createFolder(m_paths.fresh, m_security.attributes(), fresh)
        || !createFolder(path, nullptr, inside)) {
        return Status::WriteFailed;
    }
    const Owned<FileCloser> closer = makeFileCloser();
    FileSink sink(path, closer);
    return unpackVisibly(m_archive, sink, m_table.missingBytes(), m_window);
}

Status KeptOpening::make()
{
    const Status status = unpackFresh();
    if (status != Status::Ok) {
        return status;
    }
    return movePatiently(m_paths.fresh, m_paths.root) && guardFolder(m_paths.root, m_state.guard)
        ? Status::Ok
        : Status::WriteFailed;
}

Status KeptOpening::repair()
{
    if (!m_application && !createFolder(m_paths.inside, nullptr, m_application)) {
        return Status::WriteFailed;
    }
    const Status status = compare(true);
    if (status != Status::Ok) {
        return status;
    }
    Array<bool> right;
    if (!m_table.listRight(right)) {
        return Status::NoMemory;
    }
    const Owned<FileCloser> closer = makeFileCloser();
    FileSink sink(m_paths.application, closer);
    return unpackVisibly(m_archive, sink, m_table.missingBytes(), m_window, right.data());
}

class OpenedFolder final : public KeptFolder
{
public:
    // After a failure no file is open, so nothing is recorded.
    ~OpenedFolder() override { m_state.use.setLastUse(); }

    const Text &application() const override { return m_state.paths.application; }
    void clearOthers() const override { clearKeptFolders(m_state.paths, m_state.record); }
    KeptState &state() { return m_state; }

private:
    KeptState m_state;
};

} // namespace

Status openKeptFolder(const StartPlan &plan, Archive &archive, const Owned<ProgressWindow> &window,
                      Owned<KeptFolder> &folder)
{
    if (plan.settings.keepDays == 0) {
        return Status::Ok;
    }
    auto opened = makeOwned<OpenedFolder>();
    if (!opened) {
        return Status::Ok;
    }
    KeptOpening opening(opened->state(), archive, window);
    const Status status = opening.run(plan);
    if (status == Status::Ok) {
        folder = std::move(opened);
        return Status::Ok;
    }
    opening.leave();
    return canGoOnPrivately(status) ? Status::Ok : status;
}

} // namespace sfx
