// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "helpers/pe/versionresource.h"
#include "preparation/message.h"

#include <QList>
#include <QPair>

#include <optional>
#include <variant>
#include <vector>

// The version information of a produced file: that of its main program, so that both are the same
// product for Windows and for the user.
//
// Where Windows shows it: FileDescription is the name in the task manager, in the start-up apps and
// in "Open with"; without one Windows shows the file's name. Explorer's tooltip and the page
// "Details" show the rest, in the table that suits the user's language. Security products compare
// OriginalFilename with the file's name and suspect a renamed program if they differ, so it becomes
// the name of the produced file. The question for administrator rights shows the signer's name, or
// for an unsigned file the file's. The taskbar and the firewall see the unpacked main program, which
// keeps its own version information.

// A field of the version information and its text. An empty text removes the field.
using IdentityField = QPair<QString, QString>;

// Longest text of a field, in UTF-16 units.
constexpr qsizetype maxIdentityText = 1024;

// The fields that can be set. Case does not matter in their names.
QStringList identityFieldNames();

// Returns why the fields cannot be set, or nothing if they can: names must be known and different,
// texts one line of at most maxIdentityText units, and FileVersion and ProductVersion one to four
// numbers up to 65535 with dots between them.
std::optional<Message> reasonToRefuse(const QList<IdentityField> &fields);

// What tells a product from others, in one line: its company, its name, and the path of its main
// program. Empty if the version information has no name of a product: then nothing tells two products
// apart whose main programs have the same name.
QString productOf(const std::vector<pe::VersionResource> &identity, const QString &mainProgram);

// Returns the version resources for the file `productName` ("app.exe"), or a message if
// reasonToRefuse() does, or if a resource would be too large. In each language of the main
// program's, OriginalFilename is the product's name and the fields are set in all tables; a version
// also sets the number in the fixed part. A main program without version resources gives none, or
// one of no language with the fields, OriginalFilename and InternalName if there are fields.
std::variant<std::vector<pe::VersionResource>, Message>
identityOf(const std::vector<pe::VersionResource> &mainProgram, const QString &productName,
           const QList<IdentityField> &fields);
