// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/filecloser.h"

namespace sfx {

Owned<FileCloser> makeFileCloser()
{
    return Owned<FileCloser>();
}

} // namespace sfx
