// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/resource-editor/editor.h"

#include "helpers/pe/icongroups.h"
#include "helpers/pe/resourceedit.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <new>

namespace {

// Real icons have at most a few megabytes; this keeps memory use small.
constexpr std::uint64_t maxIconSize = 12U << 20;

// A failure together with the file that it is about.
struct Failure
{
    std::filesystem::path file;
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

// One line, whatever a file's name may hold.
std::string lineOf(const std::filesystem::path &file, const std::string &text)
{
    const auto name = file.u8string();
    std::string line(name.begin(), name.end());
    line += ": " + text;
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

pe::Result<pe::Bytes> readIcon(const std::filesystem::path &path)
{
    const auto file = pe::File::open(path, pe::File::Access::Read);
    if (file.hasError()) {
        return file.error();
    }
    if (file.value().size() > maxIconSize) {
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
        const bool writing = outcome.error().kind == pe::ErrorKind::CannotWrite;
        return Failure{writing ? request.save : request.open, outcome.error()};
    }
    return outcome.value();
}

// Memory only runs out before anything is written.
std::variant<pe::EditOutcome, Failure> editWithinMemory(const Request &request)
{
    try {
        return edit(request);
    } catch (const std::bad_alloc &) {
        return Failure{request.open, {pe::ErrorKind::CannotRead, "there is not enough memory"}};
    }
}

void writeLog(const Request &request, const std::string &line)
{
    if (request.log) {
        std::ofstream(*request.log, std::ios::binary | std::ios::trunc) << line << '\n';
    }
}

// A log that names one of the files at work would destroy it.
bool logIsSafe(const Request &request)
{
    std::error_code ignored;
    return !request.log
        || (*request.log != request.save
            && !std::filesystem::equivalent(*request.log, request.open, ignored)
            && !std::filesystem::equivalent(*request.log, request.save, ignored)
            && !std::filesystem::equivalent(*request.log, request.icon, ignored));
}

ExitStatus complain(const std::string &line, ExitStatus status)
{
    std::fprintf(stderr, "resource-editor: %s\n", line.c_str());
    return status;
}

} // namespace

ExitStatus runEditor(const Arguments &arguments)
{
    std::string problem;
    const auto request = parseArguments(arguments, problem);
    if (!request) {
        return complain(lineOf("arguments", problem), ExitStatus::WrongUsage);
    }
    if (!logIsSafe(*request)) {
        return complain(lineOf(*request->log, "the log may not be one of the files at work"),
                        ExitStatus::WrongUsage);
    }
    const auto result = editWithinMemory(*request);
    if (const auto *failure = std::get_if<Failure>(&result)) {
        const std::string line = lineOf(failure->file, textOf(failure->error));
        writeLog(*request, line);
        return complain(line, statusOf(failure->error.kind));
    }
    if (request->log) {
        writeLog(*request, lineOf(request->save, textOf(std::get<pe::EditOutcome>(result))));
    }
    return ExitStatus::Done;
}
