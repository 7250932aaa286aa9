// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/random.h"

#include "helpers/self-extractor/windows/systemlibrary.h"

#include <ntsecapi.h>

namespace sfx {

// Both functions are looked up here, when libraries come only from the system folder. The second
// must not be imported: Windows forwards it to CRYPTBASE.dll, and before the first instruction of
// this program it looks for that library in the folder of the produced file first.
bool randomBytes(void *bytes, std::size_t size)
{
    // Every Windows since 8 has it (Microsoft, "ProcessPrng"). The other generators call it; loading
    // their libraries takes longer.
    using ProcessPrng = BOOL(WINAPI *)(PBYTE, SIZE_T);
    const auto generate
        = SystemLibrary(L"bcryptprimitives.dll").function<ProcessPrng>("ProcessPrng");
    if (generate != nullptr) {
        return generate(static_cast<PBYTE>(bytes), size);
    }
    // Older versions of Wine have no such library.
    const auto former
        = SystemLibrary(L"advapi32.dll").function<decltype(&::RtlGenRandom)>("SystemFunction036");
    if (former == nullptr || !former(bytes, static_cast<ULONG>(size))) {
        SetLastError(ERROR_NOT_READY);
        return false;
    }
    return true;
}

} // namespace sfx
