// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/start/peimage.h"
#include "helpers/self-extractor/start/settings.h"

namespace sfx {

// Reads the settings from the resource SETTINGS (type RCDATA) of the image in `source`. Without the
// resource they stay as they are. Damaged: the directory of the resources or the settings are
// damaged, or there are settings in several languages.
//
// The file is read and not the image in memory, so every position is compared with the file's size.
// The system's functions for resources would choose among languages by the user's, and could look
// for a file of translations beside the executable.
Status readSettings(ByteSource &source, const PeImage &image, Settings &settings);

} // namespace sfx
