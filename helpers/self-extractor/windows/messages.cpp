// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/messages.h"

#include "helpers/self-extractor/start/notice.h"
#include "helpers/self-extractor/start/systemtext.h"
#include "helpers/self-extractor/start/winpath.h"
#include "helpers/self-extractor/windows/console.h"
#include "helpers/self-extractor/windows/messagetexts.h"
#include "helpers/self-extractor/windows/systemlibrary.h"
#include "helpers/self-extractor/windows/windowstation.h"

namespace sfx {

namespace {

Language userLanguage()
{
    return PRIMARYLANGID(GetUserDefaultUILanguage()) == LANG_CHINESE ? Language::Chinese
                                                                     : Language::English;
}

// The system's text for an error; it may contain the name of the file concerned.
[[nodiscard]] bool appendReason(Text &text, const Failure &failure, const char16_t *separator)
{
    wchar_t buffer[512];
    const DWORD size = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, failure.systemError, 0, buffer, ARRAYSIZE(buffer),
                                      nullptr);
    return size == 0
        || (text.append(separator)
            && appendSystemText(text, reinterpret_cast<const char16_t *>(buffer), size,
                                fileNameOf(failure.subject)));
}

[[nodiscard]] bool compose(const Failure &failure, const char16_t *separator, Text &text)
{
    const Language language = userLanguage();
    return text.append(messageText(failure.code, language))
        && (failure.missingBytes == 0 || appendMissing(text, failure.missingBytes, language))
        && (failure.subject.isEmpty() || (text.append(separator) && text.append(failure.subject)))
        && (failure.systemError == 0 || appendReason(text, failure, separator));
}

void writeLine(HANDLE out, const Text &line)
{
    DWORD written = 0;
    DWORD mode = 0;
    const int size = static_cast<int>(line.size());
    if (GetConsoleMode(out, &mode)
        && WriteConsoleW(out, line.data(), static_cast<DWORD>(size), &written, nullptr)) {
        return;
    }
    Array<char> bytes;
    if (bytes.allocate(line.size() * 3)) {
        const int length = WideCharToMultiByte(CP_UTF8, 0, wide(line.data()), size, bytes.data(),
                                               static_cast<int>(bytes.size()), nullptr, nullptr);
        WriteFile(out, bytes.data(), static_cast<DWORD>(length), &written, nullptr);
    }
}

void showBox(const Text &text, const char16_t *title)
{
    // Loaded only here: otherwise the library would cost every start a few milliseconds.
    using MessageBoxFunction = int(WINAPI *)(HWND, LPCWSTR, LPCWSTR, UINT);
    const SystemLibrary user32(L"user32.dll");
    const auto messageBox = user32.function<MessageBoxFunction>("MessageBoxW");
    if (messageBox != nullptr && hasVisibleWindows(user32)) {
        messageBox(nullptr, wide(text.data()), wide(title),
                   MB_OK | MB_ICONERROR | MB_SETFOREGROUND);
    }
}

} // namespace

void showFailure(const Failure &failure, const Text &title, bool silent)
{
    const char16_t *heading = title.isEmpty() ? defaultTitle : title.data();
    const HANDLE out = standardHandle(StandardStream::Error);
    NoticeFacts facts;
    facts.hasStandardError = out != nullptr && GetFileType(out) != FILE_TYPE_UNKNOWN;
    facts.isSilent = silent;
    facts.isForConsole = isConsoleProgram();
    Text text;
    switch (noticeOf(failure.code, facts)) {
    case Notice::Line:
        if (text.append(heading) && text.append(u": ") && compose(failure, u" ", text)
            && text.append(u"\r\n")) {
            writeLine(out, text);
        }
        break;
    case Notice::Box:
        if (compose(failure, u"\n\n", text)) {
            showBox(text, heading);
        }
        break;
    case Notice::None:
        break;
    }
}

} // namespace sfx
