// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

// The functions that the compiler and 7-Zip's sources need, implemented with the system's functions
// only. The module starts without a C runtime, which saves size and start-up time.

#include "helpers/self-extractor/windows/win32.h"

#include <cpuid.h>
#include <cstddef>
#include <cstdint>

namespace sfx {
unsigned runModule();

namespace {

// A random number of the processor, or 0 if it has none.
std::uint64_t processorsNumber()
{
    unsigned a = 0;
    unsigned b = 0;
    unsigned c = 0;
    unsigned d = 0;
    std::uint64_t number = 0;
    if (__get_cpuid(1, &a, &b, &c, &d) != 0 && (c & bit_RDRND) != 0) {
        bool valid = false;
        __asm__ volatile("rdrand %0" : "=r"(number), "=@ccc"(valid));
        return valid ? number : 0;
    }
    return number;
}

// A value for the stack guard that differs at every start. No library is loaded for it: times,
// ids, the place of the stack, which the system chooses at random, and the processor's generator.
std::uint64_t newStackGuard()
{
    LARGE_INTEGER counter = {};
    FILETIME time = {};
    QueryPerformanceCounter(&counter);
    GetSystemTimePreciseAsFileTime(&time);
    const std::uint64_t sources[]
        = {static_cast<std::uint64_t>(counter.QuadPart),
           (static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime,
           (static_cast<std::uint64_t>(GetCurrentProcessId()) << 32) | GetCurrentThreadId(),
           reinterpret_cast<std::uintptr_t>(&counter), processorsNumber()};
    std::uint64_t guard = 0;
    for (const std::uint64_t source : sources) {
        guard = (guard ^ source) * 0x9e3779b97f4a7c15; // odd, with irregular bits
        guard ^= guard >> 32;
    }
    return guard;
}

} // namespace
} // namespace sfx

extern "C" {

std::uintptr_t __stack_chk_guard = 0x595e9fbd94fda766;

[[noreturn]] void __stack_chk_fail()
{
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_STACK_BUFFER_OVERRUN));
    __builtin_unreachable();
}

void *memcpy(void *to, const void *from, std::size_t size)
{
    void *destination = to;
    __asm__ volatile("rep movsb" : "+D"(destination), "+S"(from), "+c"(size) : : "memory");
    return to;
}

void *memmove(void *to, const void *from, std::size_t size)
{
    auto *out = static_cast<unsigned char *>(to);
    const auto *in = static_cast<const unsigned char *>(from);
    if (out <= in || out >= in + size) {
        return memcpy(to, from, size);
    }
    while (size != 0) {
        --size;
        out[size] = in[size];
    }
    return to;
}

void *memset(void *to, int value, std::size_t size)
{
    void *destination = to;
    __asm__ volatile("rep stosb" : "+D"(destination), "+c"(size) : "a"(value) : "memory");
    return to;
}

int memcmp(const void *left, const void *right, std::size_t size)
{
    const auto *a = static_cast<const unsigned char *>(left);
    const auto *b = static_cast<const unsigned char *>(right);
    for (; size != 0; --size, ++a, ++b) {
        if (*a != *b) {
            return *a < *b ? -1 : 1;
        }
    }
    return 0;
}

void *memchr(const void *data, int value, std::size_t size)
{
    const auto *bytes = static_cast<const unsigned char *>(data);
    for (; size != 0; --size, ++bytes) {
        if (*bytes == static_cast<unsigned char>(value)) {
            return const_cast<unsigned char *>(bytes);
        }
    }
    return nullptr;
}

std::size_t strlen(const char *text)
{
    std::size_t size = 0;
    while (text[size] != 0) {
        ++size;
    }
    return size;
}

void *malloc(std::size_t size)
{
    return HeapAlloc(GetProcessHeap(), 0, size);
}

void free(void *memory)
{
    if (memory != nullptr) {
        HeapFree(GetProcessHeap(), 0, memory);
    }
}

// Called for a pure virtual function, which cannot happen.
[[noreturn]] void __cxa_pure_virtual()
{
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_FATAL_APP_EXIT));
    __builtin_unreachable();
}

// The process starts here. No function that checks the guard is active while it changes.
[[noreturn]] __attribute__((optimize("no-stack-protector"))) void moduleEntry()
{
    // Before anything else: libraries come only from the system folder, never from the folder that
    // this file was downloaded to.
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32);
    __stack_chk_guard = sfx::newStackGuard();
    ExitProcess(sfx::runModule());
}

} // extern "C"

// Virtual destructors refer to these; the objects of this module are freed by their owners.
void operator delete(void *memory) noexcept
{
    free(memory);
}

void operator delete(void *memory, std::size_t) noexcept
{
    free(memory);
}
