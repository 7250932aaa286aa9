// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/self-extractor/windows/progresswindow.h"

#include "helpers/self-extractor/windows/progresswindow_ids.h"
#include "helpers/self-extractor/windows/systemlibrary.h"

namespace sfx {

namespace {

constexpr DWORD patience = 300;     // ms; shorter unpacking needs no window
constexpr UINT redrawInterval = 50; // ms
constexpr COLORREF barColour = RGB(0x00, 0xb6, 0x88);
constexpr COLORREF groundColour = RGB(0xe8, 0xe8, 0xe8);

} // namespace

// Loaded for the window only: otherwise the libraries would cost every start a few milliseconds.
struct ProgressWindow::Desktop
{
    SystemLibrary user32{L"user32.dll"};
    SystemLibrary gdi32{L"gdi32.dll"};

// NOLINTNEXTLINE(bugprone-macro-parentheses): a name that is declared takes none
#define SFX_IMPORT(from, name) decltype(&::name) name = from.function<decltype(&::name)>(#name)
    SFX_IMPORT(user32, DialogBoxParamW);
    SFX_IMPORT(user32, EndDialog);
    SFX_IMPORT(user32, FillRect);
    SFX_IMPORT(user32, GetDlgItem);
    SFX_IMPORT(user32, InvalidateRect);
    SFX_IMPORT(user32, LoadImageW);
    SFX_IMPORT(user32, PostMessageW);
    SFX_IMPORT(user32, SendMessageW);
    SFX_IMPORT(user32, SetForegroundWindow);
    SFX_IMPORT(user32, SetTimer);
    SFX_IMPORT(user32, SetWindowTextW);
    SFX_IMPORT(gdi32, CreateSolidBrush);
    SFX_IMPORT(gdi32, DeleteObject);
#undef SFX_IMPORT

    bool isComplete() const
    {
        return DialogBoxParamW && EndDialog && FillRect && GetDlgItem && InvalidateRect
            && LoadImageW && PostMessageW && SendMessageW && SetForegroundWindow && SetTimer
            && SetWindowTextW && CreateSolidBrush && DeleteObject;
    }

    // The program's icon, if the packer has set one.
    void giveIcon(HWND dialog) const
    {
        const HANDLE icon = LoadImageW(GetModuleHandleW(nullptr), L"MAINICON", IMAGE_ICON, 0, 0,
                                       LR_DEFAULTSIZE | LR_SHARED);
        SendMessageW(dialog, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(icon));
        SendMessageW(dialog, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
    }

    void fill(HDC context, const RECT &area, COLORREF colour) const
    {
        const HBRUSH brush = CreateSolidBrush(colour);
        FillRect(context, &area, brush);
        DeleteObject(brush);
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
    if (const HWND dialog = __atomic_load_n(&m_dialog, __ATOMIC_ACQUIRE)) {
        m_desktop->PostMessageW(dialog, WM_TIMER, 0, 0);
    }
    m_thread.join();
}

void ProgressWindow::run(void *self)
{
    auto *window = static_cast<ProgressWindow *>(self);
    if (WaitForSingleObject(window->m_end.get(), patience) == WAIT_TIMEOUT) {
        window->show();
    }
}

void ProgressWindow::show()
{
    m_desktop = makeOwned<Desktop>();
    if (m_desktop && m_desktop->isComplete()) {
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
    return window != nullptr && window->handle(dialog, message, first, second);
}

bool ProgressWindow::handle(HWND dialog, UINT message, WPARAM first, LPARAM second)
{
    switch (message) {
    case WM_INITDIALOG:
        if (!m_title.isEmpty()) {
            m_desktop->SetWindowTextW(dialog, wide(m_title.data()));
        }
        m_desktop->giveIcon(dialog);
        m_desktop->SetTimer(dialog, 1, redrawInterval, nullptr);
        m_desktop->SetForegroundWindow(dialog);
        __atomic_store_n(&m_dialog, dialog, __ATOMIC_RELEASE);
        return true;
    case WM_TIMER:
        if (WaitForSingleObject(m_end.get(), 0) == WAIT_OBJECT_0) {
            m_desktop->EndDialog(dialog, 0);
        } else {
            m_desktop->InvalidateRect(m_desktop->GetDlgItem(dialog, progressBar), nullptr, FALSE);
        }
        return true;
    case WM_DRAWITEM:
        drawBar(reinterpret_cast<const void *>(second));
        return true;
    case WM_COMMAND: // the button, Escape, or the close button
        if (LOWORD(first) == IDCANCEL) {
            __atomic_store_n(&m_isCancelled, true, __ATOMIC_RELAXED);
            m_desktop->EndDialog(dialog, 0);
        }
        return true;
    default:
        return false;
    }
}

void ProgressWindow::drawBar(const void *item) const
{
    const auto *draw = static_cast<const DRAWITEMSTRUCT *>(item);
    const std::uint64_t done = __atomic_load_n(&m_done, __ATOMIC_RELAXED);
    const auto width = static_cast<double>(draw->rcItem.right - draw->rcItem.left);
    const double part = m_total == 0 ? 1 : static_cast<double>(done) / static_cast<double>(m_total);
    RECT bar = draw->rcItem;
    RECT ground = draw->rcItem;
    bar.right = bar.left + static_cast<LONG>(width * (part < 1 ? part : 1));
    ground.left = bar.right;
    m_desktop->fill(draw->hDC, bar, barColour);
    m_desktop->fill(draw->hDC, ground, groundColour);
}

} // namespace sfx
