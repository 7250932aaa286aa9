// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/fast-archiver/arguments.h"

#include <array>
#include <charconv>
#include <optional>
#include <string_view>

namespace fast {

namespace {

constexpr std::size_t argumentCount = 9;
constexpr std::size_t archiveAt = 2;
constexpr std::size_t folderAt = 3;
constexpr std::size_t levelAt = 5;
constexpr std::size_t methodAt = 6;

// libzstd's levels for the digits of -mx.
constexpr std::array<int, 10> levels = {1, 3, 5, 7, 12, 16, 18, 19, 20, 22};

Failure wrongUsage(const std::string &message)
{
    return {ExitStatus::WrongUsage, message};
}

// The number in the whole text, if it is one from `least` to `most`.
std::optional<unsigned> numberIn(std::string_view text, unsigned least, unsigned most)
{
    unsigned number = 0;
    const char *const end = text.data() + text.size();
    const auto [after, error] = std::from_chars(text.data(), end, number);
    const bool isNumber = error == std::errc() && after == end;
    return isNumber && number >= least && number <= most ? std::optional(number) : std::nullopt;
}

// Returns false if there is no such parameter, or if it does not have such a value.
bool setParameter(std::string_view text, PackOptions &options)
{
    const std::size_t sign = text.find('=');
    if (sign == std::string_view::npos) {
        return false;
    }
    const std::string_view name = text.substr(0, sign);
    const std::string_view value = text.substr(sign + 1);
    std::optional<unsigned> number;
    if (name == "x" && (number = numberIn(value, 1, 22))) {
        options.level = static_cast<int>(*number);
    } else if (name == "w" && (number = numberIn(value, 20, 27))) {
        options.windowLog = *number;
    } else if (name == "b" && (number = numberIn(value, 1, 1024))) {
        options.blockSize = std::uint64_t{*number} << 20;
    } else if (name == "f" && (number = numberIn(value, 0, 1))) {
        options.filtersPrograms = *number == 1;
    } else if (name == "mt" && (number = numberIn(value, 1, 256))) {
        options.threads = *number;
    }
    return number.has_value();
}

bool setMethod(std::string_view text, PackOptions &options)
{
    constexpr std::string_view method = "-m0=ZSTD";
    if (!text.starts_with(method)) {
        return false;
    }
    text.remove_prefix(method.size());
    while (text.starts_with(':')) {
        text.remove_prefix(1);
        const std::string_view parameter = text.substr(0, text.find(':'));
        if (!setParameter(parameter, options)) {
            return false;
        }
        text.remove_prefix(parameter.size());
    }
    return text.empty();
}

bool setLevel(std::string_view text, PackOptions &options)
{
    constexpr std::string_view start = "-mx=";
    if (text.size() != start.size() + 1 || !text.starts_with(start) || text.back() < '0'
        || text.back() > '9') {
        return false;
    }
    options.level = levels[static_cast<std::size_t>(text.back() - '0')];
    return true;
}

bool isSeparator(pe::NativePath::value_type unit)
{
#ifdef _WIN32
    return unit == L'\\' || unit == L'/';
#else
    return unit == '/';
#endif
}

} // namespace

Outcome<Request> parseArguments(const Arguments &arguments)
{
    if (arguments.size() != argumentCount) {
        return wrongUsage("there must be nine arguments");
    }
    std::array<std::string, argumentCount> texts;
    for (std::size_t i = 0; i < argumentCount; ++i) {
        texts[i] = pe::utf8Of(arguments[i]);
    }
    for (const auto &[index, expected] :
         {std::pair(0, "a"), std::pair(1, "-t7z"), std::pair(4, "-r"), std::pair(7, "-bsp1"),
          std::pair(8, "-ssc")}) {
        if (texts[static_cast<std::size_t>(index)] != expected) {
            return wrongUsage(std::string("expected ") + expected);
        }
    }
    Request request;
    request.archive = arguments[archiveAt];
    request.folder = arguments[folderAt];
    const std::size_t length = request.folder.size();
    if (request.archive.empty() || length < 2 || request.folder.back() != '*'
        || !isSeparator(request.folder[length - 2])) {
        return wrongUsage("expected an archive and a folder with a separator and * after it");
    }
    request.folder.pop_back();
    if (!setLevel(texts[levelAt], request.options)) {
        return wrongUsage("expected -mx= with a digit instead of " + texts[levelAt]);
    }
    if (!setMethod(texts[methodAt], request.options)) {
        return wrongUsage("no such method: " + texts[methodAt]);
    }
    return request;
}

} // namespace fast
