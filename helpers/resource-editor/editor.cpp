// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/resource-editor/editor.h"

#include "helpers/pe/icongroups.h"
#include "helpers/pe/resourceedit.h"

#include <algorithm>
#include <cstdio>
#include <new>

namespace {

// A failure together with the file that it is about.
struct Failure
{
    pe::NativePath file;
    pe::Error error;
};

ExitStatus statusOf(pe::ErrorKind kind)
{
    switch (kind) {
    case pe::ErrorKind::NotPe:
        return ExitStatus::NotAProgram;
    case pe::ErrorKind::Damaged:
        return ExitStatus::DamagedProgram;
    case pe::ErrorKind::BadIcon:
        return ExitStatus::BadIcon;
    case pe::ErrorKind::NoRoom:
        return ExitStatus::NoRoom;
    case pe::ErrorKind::CannotRead:
        return ExitStatus::CannotRead;
    case pe::ErrorKind::CannotWrite:
        return ExitStatus::CannotWrite;
    }
    return ExitStatus::CannotWrite;
}

// Joins the two. Control characters in a file's name become "?", so that it stays one line.
std::string lineOf(const std::string &subject, const std::string &text)
{
    std::string line = subject + ": " + text;
    std::replace_if(
        line.begin(), line.end(), [](char letter) { return letter >= 0 && letter < ' '; }, '?');
    return line;
}

std::string textOf(const pe::Error &error)
{
    return error.system.empty() ? error.what : error.what + " - " + error.system;
}

std::string textOf(pe::EditOutcome outcome)
{
    return outcome == pe::EditOutcome::Unchanged ? "nothing to do" : "done";
}

pe::Result<pe::Bytes> readIcon(const pe::NativePath &path)
{
    const auto file = pe::File::open(path, pe::File::Access::Read);
    if (file.hasError()) {
        return file.error();
    }
    if (file.value().size() > pe::maxIcoFileSize) {
        return pe::Error{pe::ErrorKind::BadIcon, "the icon file is too large"};
    }
    return file.value().readAt(0, static_cast<std::size_t>(file.value().size()));
}

pe::Result<pe::EditOutcome> deleteIconGroups(const Request &request)
{
    return pe::editResources(request.open, request.save,
                             [](pe::ResourceTree &tree, const pe::File &file,
                                const pe::PeHeaders &headers) {
                                 return pe::Result<bool>(pe::removeIconGroups(tree, file, headers));
                             });
}

pe::Result<pe::EditOutcome> setIconGroup(const Request &request,
                                         const std::vector<pe::IconImage> &images)
{
    return pe::editResources(
        request.open, request.save,
        [&](pe::ResourceTree &tree, const pe::File &file,
            const pe::PeHeaders &headers) -> pe::Result<bool> {
            const auto set = pe::setIconGroup(tree, file, headers, {request.groupName, 0}, images);
            if (set.hasError()) {
                return set.error();
            }
            return true;
        });
}

std::variant<pe::EditOutcome, Failure> edit(const Request &request)
{
    pe::Bytes icon;
    std::vector<pe::IconImage> images;
    const bool sets = request.action == Request::Action::SetIconGroup;
    if (sets) {
        auto read = readIcon(request.icon);
        if (read.hasError()) {
            return Failure{request.icon, read.error()};
        }
        icon = std::move(read.value());
        auto parsed = pe::parseIcoFile(icon);
        if (parsed.hasError()) {
            return Failure{request.icon, parsed.error()};
        }
        images = std::move(parsed.value());
    }
    const auto outcome = sets ? setIconGroup(request, images) : deleteIconGroups(request);
    if (outcome.hasError()) {
        const bool isWriteError = outcome.error().kind == pe::ErrorKind::CannotWrite;
        return Failure{isWriteError ? request.save : request.open, outcome.error()};
    }
    return outcome.value();
}

// Memory can only run out before anything is written.
std::variant<pe::EditOutcome, Failure> editWithinMemory(const Request &request)
{
    try {
        return edit(request);
    } catch (const std::bad_alloc &) {
        return Failure{request.open, {pe::ErrorKind::CannotRead, "there is not enough memory"}};
    }
}

// A log that cannot be written is no reason to fail: the exit status tells how the run ended.
void writeLog(const Request &request, std::string line)
{
    if (request.log.empty()) {
        return;
    }
    line += '\n';
    if (auto log = pe::File::create(request.log); !log.hasError()) {
        const auto *bytes = reinterpret_cast<const std::uint8_t *>(line.data());
        static_cast<void>(log.value().writeAt(0, {bytes, line.size()}));
    }
}

// A log with the name of one of the files would destroy that file.
bool logIsSafe(const Request &request)
{
    return request.log.empty()
        || (!pe::isSameFile(request.log, request.save) && !pe::isSameFile(request.log, request.open)
            && !pe::isSameFile(request.log, request.icon));
}

} // namespace

EditorResult runEditor(const Arguments &arguments)
{
    std::string problem;
    const auto request = parseArguments(arguments, problem);
    if (!request) {
        return {ExitStatus::WrongUsage, lineOf("arguments", problem)};
    }
    if (!logIsSafe(*request)) {
        return {ExitStatus::WrongUsage,
                lineOf(pe::utf8Of(request->log),
                       "the log file must not be one of the files being edited")};
    }
    const auto result = editWithinMemory(*request);
    if (const auto *failure = std::get_if<Failure>(&result)) {
        const std::string line = lineOf(pe::utf8Of(failure->file), textOf(failure->error));
        writeLog(*request, line);
        return {statusOf(failure->error.kind), line};
    }
    writeLog(*request,
             lineOf(pe::utf8Of(request->save), textOf(std::get<pe::EditOutcome>(result))));
    return {};
}

int runEditorProgram(const Arguments &arguments)
{
    const EditorResult result = runEditor(arguments);
    if (result.status != ExitStatus::Done) {
        std::fprintf(stderr, "resource-editor: %s\n", result.message.c_str());
    }
    return static_cast<int>(result.status);
}
