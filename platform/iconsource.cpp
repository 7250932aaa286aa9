// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/iconsource.h"

#include <atomic>

namespace {

class NativeIconSource final : public IconSource
{
public:
    ExtractedIcon extractIcon(const QString &executable) override
    {
        return extractNativeIcon(executable);
    }
};

std::atomic<IconSource *> replacementSource = nullptr;

} // namespace

IconSource &iconSource()
{
    static NativeIconSource native;
    IconSource *const replacement = replacementSource;
    return replacement ? *replacement : native;
}

void setIconSource(IconSource *replacement)
{
    replacementSource = replacement;
}
