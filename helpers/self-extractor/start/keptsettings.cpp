// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/keptsettings.h"

#include "helpers/self-extractor/start/settingvalues.h"

#include <utility>

namespace sfx {

namespace {

// A number from 1 to maxKeepDays, without zeros before it.
bool readDays(const Slice &value, unsigned &days)
{
    days = 0;
    for (std::size_t i = 0; i < value.size; ++i) {
        const char digit = value.data[i];
        if (digit < '0' || digit > '9' || (i == 0 && digit == '0')) {
            return false;
        }
        days = 10 * days + static_cast<unsigned>(digit - '0');
        if (days > maxKeepDays) {
            return false;
        }
    }
    return days != 0;
}

} // namespace

bool readKeptSetting(const Slice &key, const Slice &value, Settings &settings)
{
    if (key.equals("Keep")) {
        return settings.keepDays == 0 && readDays(value, settings.keepDays);
    }
    if (key.equals("KeepVerify")) {
        return !std::exchange(settings.hasKeepVerify, true)
            && readSwitch(value, settings.keepVerify);
    }
    return key.equals("Product") && !std::exchange(settings.hasProduct, true)
        && readText(value, settings.product);
}

} // namespace sfx
