// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "icons/iconimages.h"

#include "icons/plainiconimages.h"

namespace {

IconImages *imagesInUse = nullptr;

} // namespace

IconImages &iconImages()
{
    static PlainIconImages plain;
    return imagesInUse ? *imagesInUse : plain;
}

void setIconImages(IconImages *images)
{
    imagesInUse = images;
}
