// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/startplan.h"

#include "helpers/self-extractor/start/settingsresource.h"

namespace sfx {

Status readStartPlan(ByteSource &source, StartPlan &plan, std::uint64_t &archiveOffset)
{
    PeImage image;
    Status status = image.read(source);
    if (status == Status::Ok) {
        status = readSettings(source, image, plan.settings);
    }
    if (status != Status::Ok) {
        return status;
    }
    const BlockUse use{plan.settings.program.isEmpty(), plan.settings.folderName.isEmpty()};
    return readConfigBlock(source, image.end(), use, plan.block, archiveOffset);
}

} // namespace sfx
