// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/standardstreams.h"

namespace sfx {

bool isMeantAsHandle(StandardStream stream, unsigned long startupFlags)
{
    switch (stream) {
    case StandardStream::Input:
        return (startupFlags & startup::hotKey) == 0;
    case StandardStream::Output:
        return (startupFlags & startup::shellData) == 0;
    case StandardStream::Error:
        break;
    }
    return true;
}

StreamSource chooseStream(const StreamFacts &facts)
{
    if (facts.callersIsOpen) {
        return StreamSource::Caller;
    }
    if (!facts.hasConsole) {
        return StreamSource::None;
    }
    return facts.attachedIsOpen ? StreamSource::Attached : StreamSource::Device;
}

unsigned long flagsForProgram(unsigned long ownFlags, bool passesHandles)
{
    return passesHandles
        ? (ownFlags & ~(startup::hotKey | startup::shellData)) | startup::standardHandles
        : ownFlags & ~startup::standardHandles;
}

} // namespace sfx
