// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/self-extractor/base/status.h"
#include "helpers/self-extractor/base/text.h"

namespace sfx {

// Where the program starts to work.
enum class WorkingFolder {
    Application, // the folder that the application is unpacked into
    Caller,      // the folder in which the produced file was started
    Executable,  // the folder that the produced file lies in
};

// What a packer may set beyond the configuration block, in the produced file's RCDATA resource
// SETTINGS: UTF-8 text of lines `Key="value"` that end with LF or CRLF. Nothing is needed. Other
// keys, other lines, repeated keys and control characters are damage, and so is KeepVerify without
// Keep. The small module does not know Keep, KeepVerify and Product.
struct Settings
{
    Text program;    // Program: path in the archive, with `/`; empty: RunProgram of the block
    Text folderName; // Folder: one safe name; empty: InstallPath of the block
    Text title;      // Title
    Text arguments;  // Arguments: put before the caller's, as they are
    Text product;    // Product: names the product of a kept folder; may be empty
    WorkingFolder workingFolder = WorkingFolder::Application;
    unsigned keepDays = 0;   // Keep: how long an unused kept folder stays; 0: none is made
    bool keepVerify = false; // KeepVerify: compare the contents of a kept folder at every start
    bool silent = false;     // Silent
    bool hasTitle = false;   // the block's title counts otherwise
    bool hasSilent = false;
    bool hasWorkingFolder = false;
    bool hasKeepVerify = false;
    bool hasProduct = false;
};

// Longest text that is read, in bytes.
constexpr std::size_t maxSettingsSize = 64 * 1024;

// Longest arguments, in UTF-16 units. A command line has room for four times as many.
constexpr std::size_t maxArguments = 8191;

// Most days that an unused kept folder may stay.
constexpr unsigned maxKeepDays = 3650;

// Reads the text of the resource. Returns Ok or Damaged.
Status parseSettings(const char *data, std::size_t size, Settings &settings);

} // namespace sfx
