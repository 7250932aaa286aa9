// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/progresswindow.h"

#include "helpers/self-extractor/windows/progresswindow_ids.h"
#include "helpers/self-extractor/windows/windowstation.h"

#include <commctrl.h>
#include <uxtheme.h>

namespace sfx {

namespace {

constexpr DWORD patience = 300;     // ms; shorter unpacking needs no window
constexpr UINT redrawInterval = 50; // ms
constexpr unsigned barSteps = 10000;
constexpr COLORREF barColour = RGB(0x00, 0xb6, 0x88);
constexpr COLORREF groundColour = RGB(0xe8, 0xe8, 0xe8);

} // namespace

// Loaded for the window only: otherwise the libraries would cost every start a few milliseconds.
struct ProgressWindow::Desktop
{
    SystemLibrary user32{L"user32.dll"};
    SystemLibrary comctl32{L"comctl32.dll"};
    SystemLibrary uxtheme{L"uxtheme.dll"};

// NOLINTNEXTLINE(bugprone-macro-parentheses): a name that is declared takes none
#define SFX_IMPORT(from, name) decltype(&::name) name = from.function<decltype(&::name)>(#name)
    SFX_IMPORT(user32, AllowSetForegroundWindow);
    SFX_IMPORT(user32, DialogBoxParamW);
    SFX_IMPORT(user32, EndDialog);
    SFX_IMPORT(user32, GetDlgItem);
    SFX_IMPORT(user32, LoadImageW);
    SFX_IMPORT(user32, PostMessageW);
    SFX_IMPORT(user32, SendMessageW);
    SFX_IMPORT(user32, SetForegroundWindow);
    SFX_IMPORT(user32, SetTimer);
    SFX_IMPORT(user32, SetWindowLongW);
    SFX_IMPORT(user32, SetWindowPos);
    SFX_IMPORT(user32, SetWindowTextW);
    SFX_IMPORT(comctl32, InitCommonControlsEx);
    SFX_IMPORT(uxtheme, SetWindowTheme);
#undef SFX_IMPORT

    bool isComplete() const
    {
        return AllowSetForegroundWindow && DialogBoxParamW && EndDialog && GetDlgItem && LoadImageW
            && PostMessageW && SendMessageW && SetForegroundWindow && SetTimer && SetWindowLongW
            && SetWindowPos && SetWindowTextW && InitCommonControlsEx && SetWindowTheme;
    }

    // Makes the class of the progress bar known. Screen readers know it, too.
    bool registerBar() const
    {
        const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_PROGRESS_CLASS};
        return InitCommonControlsEx(&classes);
    }

    // The program's icon, if the packer has set one.
    void giveIcon(HWND dialog) const
    {
        const HANDLE icon = LoadImageW(GetModuleHandleW(nullptr), L"MAINICON", IMAGE_ICON, 0, 0,
                                       LR_DEFAULTSIZE | LR_SHARED);
        SendMessageW(dialog, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
        SendMessageW(dialog, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
    }

    // A flat bar. It has a border and the colours of the theme at first.
    void setUpBar(HWND bar) const
    {
        SetWindowTheme(bar, L" ", L" "); // no theme
        SetWindowLongW(bar, GWL_EXSTYLE, 0);
        SetWindowPos(bar, nullptr, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_FRAMECHANGED);
        SendMessageW(bar, PBM_SETRANGE32, 0, barSteps);
        SendMessageW(bar, PBM_SETBARCOLOR, 0, barColour);
        SendMessageW(bar, PBM_SETBKCOLOR, 0, groundColour);
    }
};

ProgressWindow::ProgressWindow(const Text &title, std::uint64_t totalBytes)
    : m_title(title)
    , m_total(totalBytes)
    , m_end(CreateEventW(nullptr, TRUE, FALSE, nullptr))
{
    if (m_end) {
        static_cast<void>(m_thread.start(run, this));
    }
}

ProgressWindow::~ProgressWindow()
{
    SetEvent(m_end.get());
    // Without the message the window would notice the event only when it draws the next time.
    if (const HWND open = dialog()) {
        m_desktop->PostMessageW(open, WM_TIMER, 0, 0);
    }
    m_thread.join();
}

// A window that disappears at once would only disturb: if half is done, the rest gets the same time again.
bool ProgressWindow::isNeeded() const
{
    const auto takesLonger = [this] {
        return WaitForSingleObject(m_end.get(), patience) == WAIT_TIMEOUT;
    };
    return takesLonger() && (progress() < barSteps / 2 || takesLonger()) && progress() < barSteps;
}

void ProgressWindow::run(void *self)
{
    auto *window = static_cast<ProgressWindow *>(self);
    if (window->isNeeded()) {
        window->show();
    }
}

void ProgressWindow::show()
{
    m_desktop = makeOwned<Desktop>();
    if (m_desktop && m_desktop->isComplete() && hasVisibleWindows(m_desktop->user32)
        && m_desktop->registerBar()) {
        m_desktop->DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(progressDialog),
                                   nullptr, dialogProcedure, reinterpret_cast<LPARAM>(this));
    }
}

INT_PTR ProgressWindow::dialogProcedure(HWND dialog, UINT message, WPARAM first, LPARAM second)
{
    // The messages before WM_INITDIALOG, which brings the object, are left to the system.
    static ProgressWindow *window = nullptr; // there is at most one
    if (message == WM_INITDIALOG) {
        window = reinterpret_cast<ProgressWindow *>(second);
    }
    return window != nullptr && window->handle(dialog, message, first);
}

bool ProgressWindow::handle(HWND dialog, UINT message, WPARAM first)
{
    switch (message) {
    case WM_INITDIALOG:
        setUp(dialog);
        __atomic_store_n(&m_dialog, dialog, __ATOMIC_RELEASE);
        return true;
    case WM_TIMER:
        if (WaitForSingleObject(m_end.get(), 0) == WAIT_OBJECT_0) {
            // As long as this process is in the foreground it may pass that on.
            m_desktop->AllowSetForegroundWindow(ASFW_ANY);
            close(dialog);
        } else {
            m_desktop->SendMessageW(m_desktop->GetDlgItem(dialog, progressBar), PBM_SETPOS,
                                    progress(), 0);
        }
        return true;
    case WM_COMMAND: // the button, Escape, or the close button
        if (LOWORD(first) == IDCANCEL) {
            __atomic_store_n(&m_isCancelled, true, __ATOMIC_RELAXED);
            close(dialog);
        }
        return true;
    default:
        return false;
    }
}

void ProgressWindow::close(HWND dialog)
{
    __atomic_store_n(&m_dialog, nullptr, __ATOMIC_RELEASE);
    m_desktop->EndDialog(dialog, 0);
}

void ProgressWindow::setUp(HWND dialog) const
{
    if (!m_title.isEmpty()) {
        m_desktop->SetWindowTextW(dialog, wide(m_title.data()));
    }
    m_desktop->giveIcon(dialog);
    m_desktop->setUpBar(m_desktop->GetDlgItem(dialog, progressBar));
    m_desktop->SetTimer(dialog, 1, redrawInterval, nullptr);
    m_desktop->SetForegroundWindow(dialog);
}

unsigned ProgressWindow::progress() const
{
    const std::uint64_t done = __atomic_load_n(&m_done, __ATOMIC_RELAXED);
    if (done >= m_total) {
        return barSteps;
    }
    const double part = static_cast<double>(done) / static_cast<double>(m_total);
    return static_cast<unsigned>(part * barSteps);
}

} // namespace sfx
