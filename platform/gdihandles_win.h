// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#pragma once

#include <windows.h>

#include <utility>

// Owners of the USER and GDI objects that are needed to read an icon. Each releases its object when
// it goes out of scope, so objects are released in the reverse order of their declarations.

class IconHandle
{
public:
    IconHandle() = default;
    IconHandle(const IconHandle &) = delete;
    IconHandle &operator=(const IconHandle &) = delete;
    ~IconHandle()
    {
        if (m_icon) {
            DestroyIcon(m_icon);
        }
    }

    HICON get() const { return m_icon; }
    HICON *out() { return &m_icon; }

private:
    HICON m_icon = nullptr;
};

class GdiObject
{
public:
    explicit GdiObject(HGDIOBJ object) : m_object(object) {}
    GdiObject(const GdiObject &) = delete;
    GdiObject &operator=(const GdiObject &) = delete;
    ~GdiObject()
    {
        if (m_object) {
            DeleteObject(m_object);
        }
    }

    HGDIOBJ get() const { return m_object; }
    explicit operator bool() const { return m_object != nullptr; }

private:
    HGDIOBJ m_object;
};

class ScreenContext
{
public:
    ScreenContext() : m_context(GetDC(nullptr)) {}
    ScreenContext(const ScreenContext &) = delete;
    ScreenContext &operator=(const ScreenContext &) = delete;
    ~ScreenContext()
    {
        if (m_context) {
            ReleaseDC(nullptr, m_context);
        }
    }

    HDC get() const { return m_context; }

private:
    HDC m_context;
};

class MemoryContext
{
public:
    explicit MemoryContext(HDC compatibleWith) : m_context(CreateCompatibleDC(compatibleWith)) {}
    MemoryContext(const MemoryContext &) = delete;
    MemoryContext &operator=(const MemoryContext &) = delete;
    ~MemoryContext()
    {
        if (m_context) {
            DeleteDC(m_context);
        }
    }

    HDC get() const { return m_context; }

private:
    HDC m_context;
};

// Selects a bitmap into a memory context. The destructor selects the previous bitmap again.
class BitmapSelection
{
public:
    BitmapSelection(HDC context, HGDIOBJ bitmap)
        : m_context(context)
        , m_displaced(SelectObject(context, bitmap))
    {
    }
    BitmapSelection(const BitmapSelection &) = delete;
    BitmapSelection &operator=(const BitmapSelection &) = delete;
    ~BitmapSelection()
    {
        if (m_displaced) {
            SelectObject(m_context, m_displaced);
        }
    }

private:
    HDC m_context;
    HGDIOBJ m_displaced;
};
