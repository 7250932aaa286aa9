// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/job.h"

#include "helpers/self-extractor/base/memory.h"
#include "helpers/self-extractor/windows/jobmember.h"

namespace sfx {

namespace {

// A job's messages may get lost (Microsoft, JOBOBJECT_ASSOCIATE_COMPLETION_PORT). Without one, the
// processes are looked at in this interval, in milliseconds.
constexpr DWORD countInterval = 1000;

// Most processes from elsewhere, such as the console's own, end together with the program. They may
// have the private folder as their working folder, so they get this time, in milliseconds.
constexpr DWORD timeForOthers = 500;

// winbase.h defines it for Windows 10 only, and the module also runs on earlier versions.
constexpr DWORD_PTR jobListAttribute = 0x2000d;

} // namespace

bool Job::setLimits(DWORD flags)
{
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = flags;
    return SetInformationJobObject(m_job.get(), JobObjectExtendedLimitInformation, &limits,
                                   sizeof limits);
}

bool Job::create()
{
    m_job.reset(CreateJobObjectW(nullptr, nullptr));
    return m_job && setLimits(JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_BREAKAWAY_OK);
}

void Job::detachProcesses()
{
    setLimits(JOB_OBJECT_LIMIT_BREAKAWAY_OK);
}

bool Job::add(HANDLE process)
{
    return AssignProcessToJobObject(m_job.get(), process);
}

unsigned Job::activeProcesses() const
{
    JOBOBJECT_BASIC_ACCOUNTING_INFORMATION accounting = {};
    if (!m_job
        || !QueryInformationJobObject(m_job.get(), JobObjectBasicAccountingInformation, &accounting,
                                      sizeof accounting, nullptr)) {
        return 0;
    }
    return accounting.ActiveProcesses;
}

bool Job::hasProgramsIn(const Text &folder) const
{
    // Room for processes that start meanwhile; the head of the list takes the place of one id.
    Array<ULONG_PTR> memory;
    if (!memory.allocate(activeProcesses() + 64)) {
        return true;
    }
    auto *list = reinterpret_cast<JOBOBJECT_BASIC_PROCESS_ID_LIST *>(memory.data());
    if (!QueryInformationJobObject(m_job.get(), JobObjectBasicProcessIdList, list,
                                   static_cast<DWORD>(memory.size() * sizeof(ULONG_PTR)),
                                   nullptr)) {
        return true;
    }
    for (DWORD i = 0; i < list->NumberOfProcessIdsInList; ++i) {
        if (worksIn(folder, static_cast<DWORD>(list->ProcessIdList[i]))) {
            return true;
        }
    }
    return false;
}

void Job::waitForProgramsIn(const Text &folder)
{
    if (activeProcesses() == 0) {
        return;
    }
    // Only now, so that no messages have accumulated while the program ran.
    const Handle port(CreateIoCompletionPort(INVALID_HANDLE_VALUE, nullptr, 0, 1));
    JOBOBJECT_ASSOCIATE_COMPLETION_PORT association = {};
    association.CompletionPort = port.get();
    const bool associated = port
        && SetInformationJobObject(m_job.get(), JobObjectAssociateCompletionPortInformation,
                                   &association, sizeof association);
    const auto waitForChange = [&port, associated](DWORD milliseconds) {
        DWORD message = 0;
        ULONG_PTR key = 0;
        OVERLAPPED *data = nullptr;
        if (!associated) {
            Sleep(milliseconds);
        } else {
            GetQueuedCompletionStatus(port.get(), &message, &key, &data, milliseconds);
        }
    };
    while (hasProgramsIn(folder)) {
        waitForChange(countInterval);
    }
    const std::uint64_t deadline = GetTickCount64() + timeForOthers;
    std::uint64_t now = 0;
    while (activeProcesses() != 0 && (now = GetTickCount64()) < deadline) {
        waitForChange(static_cast<DWORD>(deadline - now));
    }
    detachProcesses();
}

bool JobAttribute::create(const Job &job)
{
    auto *list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(m_buffer);
    SIZE_T size = sizeof m_buffer;
    if (!InitializeProcThreadAttributeList(list, 1, 0, &size)) {
        return false;
    }
    m_list = list;
    m_job = job.handle();
    return UpdateProcThreadAttribute(list, 0, jobListAttribute, &m_job, sizeof m_job, nullptr,
                                     nullptr);
}

JobAttribute::~JobAttribute()
{
    if (m_list != nullptr) {
        DeleteProcThreadAttributeList(m_list);
    }
}

} // namespace sfx
