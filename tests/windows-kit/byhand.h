// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

// What only a person can try; the end of the report. docs/windows-tests.md refers to it.
namespace kit {

inline constexpr const char *byHand[] = {
    "To be tried by hand. Please write after each line what happened, if you have tried it.",
    "1. UAC: pack a folder whose program asks for administrator rights (an installer will do), start",
    "   the product, and answer Yes. Expected: the question names the product's file and its signer, the",
    "   program runs, and %TEMP% has no folder kp-* after its end. Answer: ",
    "2. The same, but answer No. Expected: no further message, and exit code 0x4B5000D3",
    "   (start /wait product.exe & echo %errorlevel% shows 1263534291). Answer: ",
    "3. Taskbar: pin products\\hello.exe to the taskbar and start it from there. Expected: a console window",
    "   with the greeting; it may close at once. Start it a second time. Answer: ",
    "4. Explorer: double-click products\\large.exe. Expected: a progress window, its button cancels, and",
    "   the next start leaves no folder kp-* in %TEMP%. Answer: ",
    "5. Foreground: pack a program with a window so that unpacking takes some seconds, start it by a double",
    "   click and do not touch anything. Expected: its window comes up in front. Answer: ",
    "6. OneDrive: put a folder with a program into OneDrive, wait until it is uploaded, pack it from there",
    "   with Kestrelpack.exe, and start the product. Expected: it runs. Answer: ",
    "7. Internet: send products\\hello.exe to yourself by mail or download it, and double-click it. What does",
    "   SmartScreen say? Answer: ",
    "8. Stick: copy products\\large.exe to a USB stick, start it, and pull the stick while its progress window",
    "   is visible, and again after it is gone. What happens? Answer: ",
    "9. Log off while a product runs. Expected: no folder kp-* is left after the next start of any product.",
    "   Answer: ",
    "10. Narrator (Windows key, Ctrl, Enter): start products\\large.exe. Does it read the title of the progress",
    "   window, the text and the button? Go through Kestrelpack.exe with the Tab key: does it read each field",
    "   with its label? Answer: ",
    "11. Restart: start products\\manykept.exe, not as administrator, three times, and measure how long each takes",
    "   (Measure-Command in PowerShell). Restart Windows, and do the same.",
    "   Expected: the first start after the restart reads all files once, and the next ones are as fast as",
    "   before. The folder is in %LOCALAPPDATA%\\Kestrelpack. Answer: ",
};

} // namespace kit
