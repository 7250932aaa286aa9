@echo off
rem SPDX-FileCopyrightText: 2026 The Kestrelpack developers
rem SPDX-License-Identifier: MIT
rem
rem Unpacks the kit beside this file and runs everything; README.txt tells about it. The arguments are passed on:
rem "run-tests.cmd --help" shows them.
setlocal
pushd "%~dp0"
if not exist windows-kit.exe (
    echo Unpacking...
    7zr.exe x -y -bso0 -bsp0 kit.7z
)
if not exist windows-kit.exe (
    echo The kit cannot be unpacked here. Please copy its folder to a place where you can write.
    set code=1
    goto end
)
windows-kit.exe %*
set code=%errorlevel%
echo.
echo The report is %~dp0kestrelpack-windows-report.txt
:end
popd
rem A window that was opened by a double click stays open.
if not defined CI echo "%cmdcmdline%" | find /i "%~f0" >nul && pause
exit /b %code%
