// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/settings.h"

#include "helpers/self-extractor/archive/entryname.h"
#include "helpers/self-extractor/start/keylines.h"

namespace sfx {

namespace {

enum Key {
    Program,
    Folder,
    Title,
    Arguments,
    StartFolder,
    Silent,
    Keep,
    KeepVerify,
    Product,
    KeyCount
};

constexpr const char *keyNames[KeyCount] = {"Program",   "Folder",        "Title",
                                            "Arguments", "WorkingFolder", "Silent",
                                            "Keep",      "KeepVerify",    "Product"};

bool readValues(const char *data, std::size_t size, Slice (&values)[KeyCount])
{
    Slice rest{data, size};
    Slice line;
    Slice key;
    Slice value;
    while (takeLine(rest, line)) {
        if (!splitLine(line, key, value)
            || storeValue(key, value, keyNames, KeyCount, values) != KeyUse::Stored) {
            return false;
        }
    }
    return rest.size == 0;
}

// A control character could change what a terminal shows. A tab separates arguments.
bool hasControlCharacter(const Text &text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text.data()[i];
        if ((unit < 0x20 && unit != u'\t') || (unit >= 0x7f && unit < 0xa0)) {
            return true;
        }
    }
    return false;
}

// Leaves the text empty if the key is missing.
bool readText(const Slice &value, Text &text)
{
    return value.data == nullptr
        || (decodeUtf8(value.data, value.size, text) && !hasControlCharacter(text));
}

bool readWorkingFolder(const Slice &value, WorkingFolder &folder)
{
    if (value.data == nullptr || value.equals("app")) {
        folder = WorkingFolder::Application;
    } else if (value.equals("caller")) {
        folder = WorkingFolder::Caller;
    } else if (value.equals("exe")) {
        folder = WorkingFolder::Executable;
    } else {
        return false;
    }
    return true;
}

bool readSwitch(const Slice &value, bool &isOn)
{
    isOn = value.data != nullptr && value.equals("1");
    return value.data == nullptr || isOn || value.equals("0");
}

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
    return value.data == nullptr || days != 0;
}

} // namespace

Status parseSettings(const char *data, std::size_t size, Settings &settings)
{
    Slice values[KeyCount];
    if (size > maxSettingsSize || !readValues(data, size, values)
        || !readText(values[Program], settings.program)
        || !readText(values[Folder], settings.folderName)
        || !readText(values[Title], settings.title)
        || !readText(values[Arguments], settings.arguments)
        || !readWorkingFolder(values[StartFolder], settings.workingFolder)
        || !readSwitch(values[Silent], settings.silent)
        || !readDays(values[Keep], settings.keepDays)
        || !readSwitch(values[KeepVerify], settings.keepVerify)
        || !readText(values[Product], settings.product)) {
        return Status::Damaged;
    }
    const Text &program = settings.program;
    const Text &folder = settings.folderName;
    if ((values[Program].data != nullptr && !isSafePath(program.data(), program.size()))
        || (values[Folder].data != nullptr && !isSafeComponent(folder.data(), folder.size()))
        || settings.arguments.size() > maxArguments
        || (settings.keepVerify && settings.keepDays == 0)) {
        return Status::Damaged;
    }
    settings.hasTitle = values[Title].data != nullptr;
    settings.hasSilent = values[Silent].data != nullptr;
    settings.hasWorkingFolder = values[StartFolder].data != nullptr;
    return Status::Ok;
}

} // namespace sfx
