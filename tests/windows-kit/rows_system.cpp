// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/rows.h"

#include "tests/windows-kit/files.h"
#include "tests/windows-kit/product.h"
#include "tests/windows-kit/security.h"
#include "tests/windows-kit/systemtask.h"
#include "tests/windows-kit/text.h"

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

// What the system account starts, as services and build agents do.
namespace kit {

// Session 0, without a desktop that somebody sees. The second product is damaged: nobody could
// answer a message box.
Result startBySystem(const Place &place)
{
    const std::wstring product = placeProduct(place);
    const std::string whole = readFile(product);
    writeFile(place.path(L"damaged.exe"), whole.substr(0, whole.size() - 10));
    const std::string problem = runAsSystem(place,
                                            "set \"KIT_NOTE=%~dp0notes.txt\"\r\n"
                                            "\"%~dp0product.exe\" --exit=5\r\n"
                                            ">\"%~dp0codes.txt\" echo %errorlevel%\r\n"
                                            "\"%~dp0damaged.exe\"\r\n"
                                            ">>\"%~dp0codes.txt\" echo %errorlevel%\r\n");
    if (!problem.empty()) {
        return notJudged(problem);
    }
    const Notes notes(place.path(L"notes.txt"));
    const std::string codes = oneLine(readFile(place.path(L"codes.txt")));
    Check check;
    check.that(codes == "5 1263534281", "the exit codes are: " + codes); // the second: 0x4B5000C9
    check.that(notes["data"] == dataLine, "the program's data are missing");
    check.that(notes.isThere() && !exists(wide(notes["dir"])), "it left " + notes["dir"]);
    check.note("unpacked into " + notes["dir"]);
    return check.result();
}

namespace {

// The system's temporary folder, where every user may create files. The file belongs to this user
// and not to the administrators.
class PlantedHelper
{
public:
    explicit PlantedHelper(const Place &place)
        : m_path(variable(L"SystemRoot") + L"\\Temp\\7zr.exe")
    {
        if (!isElevated() || exists(m_path)) {
            return;
        }
        PSID user = nullptr;
        ConvertStringSidToSidW(wide(userSid()).c_str(), &user);
        m_isCopied = copyFile(place.file(L"kit-probe.exe"), m_path);
        m_isThere = m_isCopied
            && SetNamedSecurityInfoW(m_path.data(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION,
                                     user, nullptr, nullptr, nullptr)
                == ERROR_SUCCESS;
        LocalFree(user);
    }
    PlantedHelper(const PlantedHelper &) = delete;
    PlantedHelper &operator=(const PlantedHelper &) = delete;
    ~PlantedHelper()
    {
        if (m_isCopied) {
            DeleteFileW(m_path.c_str());
        }
    }
    bool isThere() const { return m_isThere; }

private:
    std::wstring m_path;
    bool m_isCopied = false;
    bool m_isThere = false;
};

} // namespace

// The planted program is the probe: it would leave notes.
Result helperPlantedForSystem(const Place &place)
{
    const PlantedHelper planted(place);
    if (!planted.isThere()) {
        return notJudged("only an administrator can make a task of the system account, and a file "
                         "C:\\Windows\\Temp\\7zr.exe that was not there before");
    }
    copyFile(place.file(L"kestrelpack-cli.exe"), place.path(L"kestrelpack-cli.exe"));
    makeFolder(place.path(L"source"));
    copyFile(place.file(L"kit-probe.exe"), place.path(L"source\\kit-probe.exe"));
    const std::string problem = runAsSystem(
        place,
        "set \"TMP=%SystemRoot%\\Temp\"\r\nset \"TEMP=%SystemRoot%\\Temp\"\r\n"
        "set \"KIT_NOTE=%~dp0planted.txt\"\r\n"
        "\"%~dp0kestrelpack-cli.exe\" -o \"%~dp0out\" \"%~dp0source\" >\"%~dp0log.txt\" 2>&1\r\n"
        ">\"%~dp0code.txt\" echo %errorlevel%\r\n");
    if (!problem.empty()) {
        return notJudged(problem);
    }
    const std::string code = oneLine(readFile(place.path(L"code.txt")));
    const bool isMade = exists(place.path(L"out\\kit-probe.exe"));
    Check check;
    check.that(!exists(place.path(L"planted.txt")), "the planted program was started");
    check.that((code == "0" && isMade) || (code == "1" && !isMade),
               "packing ended with " + code + ": " + oneLine(readFile(place.path(L"log.txt"))));
    check.note("packing ended with " + code);
    return check.result();
}

} // namespace kit
