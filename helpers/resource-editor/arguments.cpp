// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/resource-editor/arguments.h"

#include "helpers/pe/resourcetree.h"

#include <algorithm>

namespace {

// A resource name's length is stored in 16 bits.
constexpr std::size_t maxNameLength = 0xffff;

const std::vector<std::string> deleteSwitches = {"-open", "-save", "-action", "-mask", "-log"};
const std::vector<std::string> addSwitches
    = {"-open", "-save", "-action", "-resource", "-mask", "-log"};

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isGroupName(const std::string &name)
{
    return !name.empty() && isLetter(name.front())
        && std::all_of(name.begin(), name.end(),
                       [](char c) { return isLetter(c) || (c >= '0' && c <= '9') || c == '_'; });
}

// Returns what is wrong; empty if each switch is in its place and has a value.
std::string problemWith(const Arguments &arguments, const std::vector<std::string> &switches)
{
    for (std::size_t i = 0; i < switches.size(); ++i) {
        if (2 * i >= arguments.size()) {
            return switches[i] + " is missing";
        }
        if (const std::string found = pe::utf8Of(arguments[2 * i]); found != switches[i]) {
            return "expected " + switches[i] + " instead of " + found;
        }
        if (2 * i + 1 == arguments.size() || arguments[2 * i + 1].empty()) {
            return switches[i] + " needs a value";
        }
    }
    return arguments.size() == 2 * switches.size()
        ? std::string()
        : "unexpected argument " + pe::utf8Of(arguments[2 * switches.size()]);
}

// The name in "ICONGROUP,NAME,"; empty if the mask has another form.
std::u16string groupNameIn(const std::string &mask)
{
    constexpr std::string_view type = "ICONGROUP,";
    if (!mask.starts_with(type) || !mask.ends_with(',') || mask.size() <= type.size()) {
        return {};
    }
    const std::string name = mask.substr(type.size(), mask.size() - type.size() - 1);
    return isGroupName(name) ? pe::upperCased(std::u16string(name.begin(), name.end()))
                             : std::u16string();
}

} // namespace

std::optional<Request> parseArguments(const Arguments &arguments, std::string &problem)
{
    const std::string action = arguments.size() > 5 ? pe::utf8Of(arguments[5]) : std::string();
    const bool adds = action == "addoverwrite";
    problem = problemWith(arguments, adds ? addSwitches : deleteSwitches);
    if (!problem.empty()) {
        return std::nullopt;
    }
    Request request;
    request.open = arguments[1];
    request.save = arguments[3];
    const std::string mask = pe::utf8Of(arguments[adds ? 9 : 7]);
    if (adds) {
        request.action = Request::Action::SetIconGroup;
        request.icon = arguments[7];
        request.groupName = groupNameIn(mask);
    }
    if (!adds && action != "delete") {
        problem = "-action must be delete or addoverwrite";
    } else if (adds && request.groupName.empty()) {
        problem = "-mask must be ICONGROUP,NAME, where NAME has only letters, digits and _";
    } else if (request.groupName.size() > maxNameLength) {
        problem = "the name in -mask is too long";
    } else if (!adds && mask != "ICONGROUP,") {
        problem = "-mask must be ICONGROUP, to delete";
    }
    if (pe::utf8Of(arguments.back()) != "NUL") {
        request.log = arguments.back();
    }
    return problem.empty() ? std::optional(std::move(request)) : std::nullopt;
}
