// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/mainprogram.h"

#include "platform/nativepath.h"
#include "preparation/requestedrights.h"

namespace {

constexpr std::uint16_t executableImage = 0x2; // IMAGE_FILE_EXECUTABLE_IMAGE
constexpr std::uint16_t dll = 0x2000;          // IMAGE_FILE_DLL

// Of .NET programs (COMIMAGE_FLAGS_...). Without "32 bits required", a program of intermediate
// language only runs with 64 bits where it can.
constexpr std::uint32_t ilOnly = 0x1;
constexpr std::uint32_t needs32Bits = 0x2;

QString systemTextOf(const pe::Error &error)
{
    return QString::fromStdString(error.system.empty() ? error.what : error.system);
}

// The content of the manifest that Windows reads, which has the id 1; empty if there is none, or if it
// cannot be read.
QByteArray manifestOf(const pe::File &file, const pe::PeHeaders &headers)
{
    constexpr std::uint32_t maxManifestSize = 1U << 20;
    const auto tree = pe::readResourceTree(file, headers);
    const auto *type = tree.hasError() || !tree.value()
        ? nullptr
        : pe::findEntry(tree.value()->root, {std::nullopt, pe::manifestType});
    const auto *name = type == nullptr || !type->directory
        ? nullptr
        : pe::findEntry(*type->directory, {std::nullopt, 1});
    const auto *data = name == nullptr ? nullptr : pe::firstData(*name);
    if (data == nullptr) {
        return {};
    }
    const auto content = pe::readResource(file, headers, *data, maxManifestSize);
    return content.hasError() ? QByteArray()
                              : QByteArray(reinterpret_cast<const char *>(content.value().data()),
                                           static_cast<qsizetype>(content.value().size()));
}

// Why Windows does not start programs of this subsystem. Nothing if it does.
std::optional<Message> refusalOfSubsystem(std::uint16_t subsystem)
{
    switch (subsystem) {
    case pe::subsystemWindows:
    case pe::subsystemConsole:
        return std::nullopt;
    case 1:
        return Message{"it is a driver or a part of Windows' own start, not an application", {}};
    case 5:
        return Message{"it is a program for OS/2, which Windows cannot start", {}};
    case 7:
        return Message{"it is a program for the POSIX subsystem, which Windows no longer has", {}};
    case 9:
        return Message{"it is a program for Windows CE", {}};
    case 10:
    case 11:
    case 12:
    case 13:
        return Message{"it is a program for the computer's firmware (EFI), not for Windows", {}};
    default:
        return Message{"its header has the subsystem %1, which Windows does not start",
                       {QString::number(subsystem)}};
    }
}

Startability startabilityOfMachine(const pe::ProgramHeader &header)
{
    const bool isAnyCpu = header.clrFlags && (*header.clrFlags & ilOnly) != 0
        && (*header.clrFlags & needs32Bits) == 0;
    switch (header.machine) {
    case pe::machineX64:
        return {true, std::nullopt};
    case pe::machineX86:
        if (isAnyCpu) {
            return {true,
                    Message{"it is a .NET Framework program for any processor; the produced "
                            "file starts on 64-bit Windows only",
                            {}}};
        }
        return {true,
                Message{"it is a 32-bit program; the produced file starts on 64-bit Windows "
                        "only",
                        {}}};
    case pe::machineArm64:
        return {true,
                Message{"it is an ARM64 program; the produced file starts on Windows 11 on "
                        "ARM only and fails elsewhere with the exit code 0x4B5000D2",
                        {}}};
    case pe::machineArm:
        return {true,
                Message{"it is a 32-bit ARM program; the produced file starts on Windows 11 "
                        "on ARM before version 24H2 only and fails elsewhere with the exit "
                        "code 0x4B5000D2",
                        {}}};
    default:
        return {false,
                Message{"it is made for a processor that Windows no longer supports (%1)",
                        {QString::fromStdString(pe::machineName(header.machine))}}};
    }
}

} // namespace

std::variant<MainProgram, Message> readMainProgram(const QString &path)
{
    const auto file = pe::File::open(toNativePath(path), pe::File::Access::Read);
    if (file.hasError()) {
        return Message{"it cannot be read: %1", {systemTextOf(file.error())}};
    }
    MainProgram program;
    const auto header = pe::programHeaderOf(file.value());
    if (header.hasError()) {
        return Message{"it is damaged: %1", {systemTextOf(header.error())}};
    }
    program.header = header.value();
    if (program.header.format != pe::ProgramHeader::Format::Pe) {
        return program;
    }
    const auto headers = pe::PeHeaders::read(file.value());
    if (headers.hasError()) {
        return Message{"it cannot be read: %1", {systemTextOf(headers.error())}};
    }
    auto identity = pe::versionResourcesOf(file.value(), headers.value());
    program.hasDamagedIdentity = identity.hasError();
    if (!identity.hasError()) {
        program.identity = std::move(identity.value());
    }
    program.asksForRights = asksForRights(manifestOf(file.value(), headers.value()));
    return program;
}

Startability startabilityOf(const pe::ProgramHeader &header)
{
    using Format = pe::ProgramHeader::Format;
    switch (header.format) {
    case Format::Unknown:
        return {false, Message{"it is not a Windows program", {}}};
    case Format::Dos:
        return {false, Message{"it is a program for DOS, which 64-bit Windows cannot start", {}}};
    case Format::SixteenBit:
        return {false, Message{"it is a 16-bit program, which 64-bit Windows cannot start", {}}};
    case Format::Pe:
        break;
    }
    if ((header.characteristics & dll) != 0) {
        return {false, Message{"it is a library (DLL), which cannot be started", {}}};
    }
    if ((header.characteristics & executableImage) == 0) {
        return {false, Message{"its header says that it was not linked completely", {}}};
    }
    if (const auto refusal = refusalOfSubsystem(header.subsystem)) {
        return {false, refusal};
    }
    return startabilityOfMachine(header);
}

ProgramKind kindOf(const pe::ProgramHeader &header)
{
    return header.subsystem == pe::subsystemConsole ? ProgramKind::Console : ProgramKind::Windows;
}
