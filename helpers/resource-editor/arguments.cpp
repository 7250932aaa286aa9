// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/resource-editor/arguments.h"

#include "helpers/pe/resourcetree.h"

#include <algorithm>
#include <map>
#include <system_error>

namespace {

// A resource name's length is stored in 16 bits.
constexpr std::size_t maxNameLength = 0xffff;

constexpr std::string_view knownSwitches[]
    = {"-open", "-save", "-action", "-resource", "-mask", "-log"};

std::string lowerCased(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A')) : letter;
    });
    return text;
}

std::string utf8Of(const std::filesystem::path &argument)
{
    const auto text = argument.u8string();
    return std::string(text.begin(), text.end());
}

using Switches = std::map<std::string, std::filesystem::path>;

bool collectSwitches(const Arguments &arguments, Switches &switches, std::string &problem)
{
    for (std::size_t i = 0; i < arguments.size(); i += 2) {
        const std::string name = lowerCased(utf8Of(arguments[i]));
        if (std::find(std::begin(knownSwitches), std::end(knownSwitches), name)
            == std::end(knownSwitches)) {
            problem = "unknown argument " + utf8Of(arguments[i]);
            return false;
        }
        if (i + 1 == arguments.size() || arguments[i + 1].empty()) {
            problem = name + " needs a value";
            return false;
        }
        if (!switches.emplace(name, arguments[i + 1]).second) {
            problem = name + " is given twice";
            return false;
        }
    }
    for (const char *needed : {"-open", "-save", "-action", "-mask"}) {
        if (!switches.contains(needed)) {
            problem = std::string(needed) + " is missing";
            return false;
        }
    }
    return true;
}

// A mask's fields: type, name and language, divided by commas. Fields at its end may be left out.
std::vector<std::string> fieldsOf(const std::string &mask)
{
    std::vector<std::string> fields;
    std::size_t begin = 0;
    for (std::size_t comma = 0; comma != std::string::npos; begin = comma + 1) {
        comma = mask.find(',', begin);
        fields.push_back(mask.substr(begin, comma - begin));
    }
    while (!fields.empty() && fields.back().empty()) {
        fields.pop_back();
    }
    return fields;
}

std::optional<Request> parse(const Arguments &arguments, std::string &problem)
{
    Switches switches;
    if (!collectSwitches(arguments, switches, problem)) {
        return std::nullopt;
    }
    Request request;
    request.open = switches["-open"];
    request.save = switches["-save"];
    if (switches.contains("-log") && lowerCased(utf8Of(switches["-log"])) != "nul") {
        request.log = switches["-log"];
    }
    const auto fields = fieldsOf(utf8Of(switches["-mask"]));
    if (fields.empty() || lowerCased(fields[0]) != "icongroup") {
        problem = "-mask must begin with ICONGROUP";
        return std::nullopt;
    }
    const std::string action = lowerCased(utf8Of(switches["-action"]));
    if (action == "delete" && fields.size() == 1 && !switches.contains("-resource")) {
        return request;
    }
    if (action == "addoverwrite" && fields.size() == 2 && switches.contains("-resource")) {
        request.action = Request::Action::SetIconGroup;
        request.icon = switches["-resource"];
        const auto *name = reinterpret_cast<const char8_t *>(fields[1].c_str());
        request.groupName = pe::upperCased(std::filesystem::path(name).u16string());
        if (request.groupName.size() > maxNameLength) {
            problem = "the name in -mask is too long";
            return std::nullopt;
        }
        return request;
    }
    problem = "only \"-action delete -mask ICONGROUP,\" and \"-action addoverwrite -resource ICO "
              "-mask ICONGROUP,NAME,\" are known";
    return std::nullopt;
}

} // namespace

std::optional<Request> parseArguments(const Arguments &arguments, std::string &problem)
{
    try {
        return parse(arguments, problem);
    } catch (const std::system_error &) { // of the conversions that std::filesystem::path does
        problem = "an argument is not valid text";
        return std::nullopt;
    }
}
