// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/start/settings.h"

#include "helpers/self-extractor/archive/entryname.h"
#include "helpers/self-extractor/start/keptsettings.h"
#include "helpers/self-extractor/start/settingvalues.h"

namespace sfx {

namespace {

enum Key { Program, Folder, Title, Arguments, StartFolder, Silent, KeyCount };

constexpr const char *keyNames[KeyCount]
    = {"Program", "Folder", "Title", "Arguments", "WorkingFolder", "Silent"};

bool readValues(const char *data, std::size_t size, Slice (&values)[KeyCount], Settings &settings)
{
    Slice rest{data, size};
    Slice line;
    Slice key;
    Slice value;
    while (takeLine(rest, line)) {
        if (!splitLine(line, key, value)) {
            return false;
        }
        const KeyUse use = storeValue(key, value, keyNames, KeyCount, values);
        if (use != KeyUse::Stored
            && (use != KeyUse::Unknown || !readKeptSetting(key, value, settings))) {
            return false;
        }
    }
    return rest.size == 0;
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

} // namespace

Status parseSettings(const char *data, std::size_t size, Settings &settings)
{
    Slice values[KeyCount];
    if (size > maxSettingsSize || !readValues(data, size, values, settings)
        || !readText(values[Program], settings.program)
        || !readText(values[Folder], settings.folderName)
        || !readText(values[Title], settings.title)
        || !readText(values[Arguments], settings.arguments)
        || !readWorkingFolder(values[StartFolder], settings.workingFolder)
        || !readSwitch(values[Silent], settings.silent)) {
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
