// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "tests/windows-kit/rows.h"

namespace kit {

namespace {

// Reasons why Wine cannot judge a row.
constexpr const char *handles = "a program of the desktop is attached to no console there";
constexpr const char *loader = "its loader does not know where a program lets libraries come from";
constexpr const char *programs = "it refuses program paths of this length";
constexpr const char *rights = "it has no access lists, labels or UAC";
constexpr const char *consoles = "its consoles are not those of Windows";
constexpr const char *disks = "it cannot make disks";
constexpr const char *stations = "its window stations do not hide windows";
constexpr const char *shell = "it knows no handles of the taskbar";

} // namespace

// A row is quick if it takes about a second and holds under Wine: the short run has those.
const std::vector<Row> &allRows()
{
    static const std::vector<Row> rows = {
        {"start: the example prints its greeting", exampleProduct, false, nullptr},
        {"start: all 32 bits of the exit code arrive", exitCodeIsWhole, true, nullptr},
        {"start: arguments arrive unchanged", argumentsAreUnchanged, true, nullptr},
        {"start: without standard handles", startedWithoutHandles, true, nullptr},
        {"start: how long five starts take", timeOfAStart, true, nullptr},
        {"start: from the taskbar", startedFromTaskbar, false, shell},
        {"start: on a window station that nobody sees", serviceLike, false, nullptr},
        {"start: a failure on a window station that nobody sees shows no box", serviceLikeFailure,
         false, stations},
        {"start: Ctrl+C ends the program", controlC, false, consoles},
        {"start: the caller's console closes", consoleCloses, false, consoles},

        {"cmd: output into a file", cmdOutputToFile, true, handles},
        {"cmd: errors into a file", cmdErrorsToFile, true, handles},
        {"cmd: output into nul", cmdOutputToNothing, true, handles},
        {"cmd: piped into more", cmdPipe, true, handles},
        {"cmd: for /f", cmdForLoop, false, handles},
        {"cmd: input from a file", cmdInputFromFile, true, handles},
        {"cmd: without a redirection the console is used", cmdConsole, false, handles},
        {"cmd: errorlevel in a script", cmdErrorLevel, true, nullptr},
        {"cmd: errorlevel after start /wait", cmdStartWait, true, nullptr},
        {"cmd: does a line outside a script wait?", cmdPrompt, false, nullptr},

        {"PowerShell: piped into Out-File", powerShellOutFile, false, nullptr},
        {"PowerShell: output into a file", powerShellRedirection, false, nullptr},
        {"PowerShell: $text = & product", powerShellVariable, false, nullptr},
        {"PowerShell: $LASTEXITCODE after a pipeline", powerShellExitCode, false, nullptr},
        {"PowerShell: Start-Process -Wait", powerShellStartProcess, false, nullptr},
        {"PowerShell: Start-Process -RedirectStandardOutput", powerShellStartProcessRedirected,
         false, nullptr},
        {"PowerShell: does a plain call wait?", powerShellPlain, false, nullptr},

        {"console: typed at a prompt of cmd", consolePrompt, true, nullptr},
        {"console: a plain call in PowerShell", consolePowerShell, false, nullptr},
        {"console: without standard handles", consoleWithoutHandles, true, nullptr},
        {"console: Ctrl+C ends the program", consoleControlC, false, consoles},

        {"libraries: empty ones beside a product", emptyLibrariesBesideProduct, false, loader},
        {"libraries: empty ones beside kestrelpack-cli.exe", emptyLibrariesBesideTerminalProgram,
         false, loader},
        {"libraries: empty ones beside Kestrelpack.exe", emptyLibrariesBesideWindow, false, loader},
        {"libraries: empty ones beside 7zr.exe", emptyLibrariesBesideArchiver, false, loader},
        {"libraries: empty ones beside ResourceHacker.exe", emptyLibrariesBesideEditor, false,
         loader},

        {"folder: only the user, administrators and the system may open it", folderRights, false,
         rights},
        {"folder: elevated, the user's other programs may not write it", folderRightsElevated,
         false, rights},
        {"folder: elevated, the user's other programs cannot rename or change it",
         folderIsClosedToOthers, false, rights},
        {"folder: two starts after each other use the same name", folderNameIsStable, true,
         nullptr},
        {"folder: two starts at the same time use different names", folderNamesDiffer, true,
         nullptr},
        {"folder: the next start removes that of a killed start", killedStart, true, nullptr},
        {"folder: a held file, and the next start removes the rest", heldFileAtRemoval, false,
         nullptr},
        {"folder: a held file keeps all others", heldFileKeepsTheOthers, false, nullptr},
        {"folder: a program outside the job keeps its files", breakawayChild, false, nullptr},

        {"rights: Windows refuses programs that ask for more with error 740", refusalOfMoreRights,
         false, rights},
        {"rights: a program that asks for administrator's rights", programForAdministrators, false,
         rights},
        {"rights: a program that asks for uiAccess", programWithUiAccess, false, rights},
        {"rights: a start with a restricted token", startInSandbox, false, rights},
        {"rights: a task of the system account", startBySystem, false, rights},
        {"rights: the system account starts no planted 7zr.exe", helperPlantedForSystem, false,
         rights},

        {"files: attributes of a cloud folder (0x80420)", cloudAttributes, true, nullptr},
        {"files: 400 MB in one file", largeFile, false, nullptr},
        {"files: a scanner reads while they are written", readersDuringUnpacking, false, nullptr},
        {"files: the product's path is longer than 260", longPathOfProduct, false, programs},
        {"files: a path in the product is longer than 260", longPathInProduct, true, nullptr},
        {"files: the temporary path is long", longTemporaryPath, true, nullptr},
        {"files: the program's path is longer than 260", longProgramPath, false, programs},
        {"files: the temporary path has more than 232 characters", veryLongTemporaryPath, false,
         programs},
        {"files: names that look like short names", shortNames, false, nullptr},
        {"files: Chinese, accents and emoji in all paths", namesBeyondAscii, true, nullptr},
        {"files: the product is on the drive of --drive", otherDrive, false, nullptr},
        {"files: a disk with FAT32", fatDisk, false, disks},
        {"files: a file over 4 GiB on a disk with FAT32", fatDiskLargeFile, false, disks},

        {"fast: a product of --profile fast-start", fastStart, false, nullptr},
        {"fast: how long three starts with 5,000 files take", timeOfFastStarts, false, nullptr},
        {"kept: the second start uses the folder of the first", keptSecondStart, false, rights},
        {"kept: a junction in the folder is replaced", keptJunction, false, rights},
        {"kept: a symbolic link in the folder is replaced", keptSymbolicLink, false, rights},
        {"kept: elevated, nothing is kept", keptElevated, false, nullptr},
        {"kept: how long the first start with 5,000 files takes, and the next ones",
         timeOfKeptStarts, false, rights},

        {"packing: kestrelpack-cli.exe packs a folder", terminalProgramPacks, false, nullptr},
        {"packing: with --profile fast-start", fastArchiverPacks, false, nullptr},
        {"packing: with --profile fast-start, from a path longer than 260",
         fastArchiverPacksLongPaths, false, nullptr},
        {"packing: from OneDrive", packingFromOneDrive, false, nullptr},
        {"packing: no raw escape sequences in a console", escapeSequences, false, consoles},
        {"packing: the console closes during a job", consoleClosesDuringJob, false, nullptr},
    };
    return rows;
}

} // namespace kit
