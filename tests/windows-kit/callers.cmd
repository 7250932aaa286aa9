@echo off
rem SPDX-FileCopyrightText: 2026 The Kestrelpack developers
rem SPDX-License-Identifier: MIT
rem
rem callers.cmd ROW: starts the product %KIT_PRODUCT% as people start programs in cmd. windows-kit.exe starts
rem this script in the row's folder, in a console of its own, and looks at what it leaves.
goto %1

:output-to-file
"%KIT_PRODUCT%" --print=one >out.txt
exit /b

:errors-to-file
"%KIT_PRODUCT%" --error=two 2>out.txt
exit /b

:output-to-nothing
"%KIT_PRODUCT%" --print=three >nul
exit /b

:pipe
"%KIT_PRODUCT%" --print=four | more >out.txt
exit /b

:for-loop
for /f "delims=" %%i in ('"%KIT_PRODUCT%" --print=five') do >out.txt echo %%i
exit /b

:input-from-file
"%KIT_PRODUCT%" --echo <in.txt >out.txt
exit /b

:console
"%KIT_PRODUCT%" --print=six
exit /b

:error-level
"%KIT_PRODUCT%" --exit=42
>out.txt echo %errorlevel%
exit /b

:start-wait
start "" /wait "%KIT_PRODUCT%" --exit=43
>out.txt echo %errorlevel%
exit /b
