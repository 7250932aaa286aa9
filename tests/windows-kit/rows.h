// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/windows-kit/row.h"

// The functions of the rows; the table in rows.cpp has their names.
namespace kit {

// rows_callers.cpp: cmd and PowerShell start a product
Result cmdOutputToFile(const Place &place);
Result cmdErrorsToFile(const Place &place);
Result cmdOutputToNothing(const Place &place);
Result cmdPipe(const Place &place);
Result cmdForLoop(const Place &place);
Result cmdInputFromFile(const Place &place);
Result cmdConsole(const Place &place);
Result cmdErrorLevel(const Place &place);
Result cmdStartWait(const Place &place);
Result cmdPrompt(const Place &place);
Result powerShellOutFile(const Place &place);
Result powerShellRedirection(const Place &place);
Result powerShellVariable(const Place &place);
Result powerShellExitCode(const Place &place);
Result powerShellStartProcess(const Place &place);
Result powerShellStartProcessRedirected(const Place &place);
Result powerShellPlain(const Place &place);
Result consolePowerShell(const Place &place);

// rows_libraries.cpp: empty DLLs beside the programs
Result emptyLibrariesBesideProduct(const Place &place);
Result emptyLibrariesBesideTerminalProgram(const Place &place);
Result emptyLibrariesBesideWindow(const Place &place);
Result emptyLibrariesBesideArchiver(const Place &place);
Result emptyLibrariesBesideEditor(const Place &place);

// rows_folder.cpp: the private folder
Result folderRights(const Place &place);
Result folderRightsElevated(const Place &place);
Result folderNameIsStable(const Place &place);
Result folderNamesDiffer(const Place &place);
Result killedStart(const Place &place);
Result heldFileAtRemoval(const Place &place);
Result heldFileKeepsTheOthers(const Place &place);
Result breakawayChild(const Place &place);

// rows_rights.cpp: more and fewer rights than usual
Result refusalOfMoreRights(const Place &place);
Result programForAdministrators(const Place &place);
Result programWithUiAccess(const Place &place);
Result startInSandbox(const Place &place);
Result folderIsClosedToOthers(const Place &place);

// rows_system.cpp: starts by the system account
Result startBySystem(const Place &place);
Result helperPlantedForSystem(const Place &place);

// rows_files.cpp: what is unpacked, and from where
Result cloudAttributes(const Place &place);
Result largeFile(const Place &place);
Result readersDuringUnpacking(const Place &place);
Result longPathOfProduct(const Place &place);
Result longPathInProduct(const Place &place);
Result longTemporaryPath(const Place &place);
Result longProgramPath(const Place &place);
Result veryLongTemporaryPath(const Place &place);
Result shortNames(const Place &place);
Result namesBeyondAscii(const Place &place);

// rows_disks.cpp: other disks
Result otherDrive(const Place &place);
Result fatDisk(const Place &place);
Result fatDiskLargeFile(const Place &place);

// rows_starts.cpp: ways to start a product
Result exampleProduct(const Place &place);
Result exitCodeIsWhole(const Place &place);
Result argumentsAreUnchanged(const Place &place);
Result startedFromTaskbar(const Place &place);
Result startedWithoutHandles(const Place &place);
Result serviceLike(const Place &place);
Result serviceLikeFailure(const Place &place);
Result consolePrompt(const Place &place);
Result consoleWithoutHandles(const Place &place);
Result controlC(const Place &place);
Result consoleControlC(const Place &place);
Result consoleCloses(const Place &place);
Result timeOfAStart(const Place &place);

// rows_kept.cpp: fast starts and kept folders
Result fastStart(const Place &place);
Result timeOfFastStarts(const Place &place);
Result keptSecondStart(const Place &place);
Result keptJunction(const Place &place);
Result keptSymbolicLink(const Place &place);
Result keptElevated(const Place &place);
Result timeOfKeptStarts(const Place &place);

// rows_packing.cpp: the programs that pack
Result terminalProgramPacks(const Place &place);
Result fastArchiverPacks(const Place &place);
Result fastArchiverPacksLongPaths(const Place &place);
Result packingFromOneDrive(const Place &place);
Result escapeSequences(const Place &place);
Result consoleClosesDuringJob(const Place &place);

} // namespace kit
