// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/platform.h"

#include "platform/iconpixels_win.h"

#include <QDir>
#include <QProcess>
#include <QThread>

#include <windows.h>

#include <shlobj.h>

namespace {

class WindowsPlatform final : public Platform
{
public:
    ExtractedIcon extractIcon(const QString &executable) override
    {
        return iconPixelsOf(executable);
    }

    // %TEMP% belongs to its user alone, so whatever lies there is the user's own.
    QString refusalToUse(const QString &) override { return {}; }

    void prepareStart(QProcess &process) override
    {
        // The helpers are console programs; the window's program has no console to lend them.
        process.setCreateProcessArgumentsModifier([](QProcess::CreateProcessArguments *arguments) {
            arguments->flags |= CREATE_NO_WINDOW;
        });
    }

    void startDetached(const QString &program) override
    {
        QProcess::startDetached(program, {}, {}, nullptr);
    }

    void notifyAssociationsChanged() override
    {
        SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
    }

    void pause(std::chrono::milliseconds duration) override
    {
        QThread::msleep(static_cast<unsigned long>(duration.count()));
    }

    QString nativePath(const QString &path) override { return QDir::toNativeSeparators(path); }
};

} // namespace

std::unique_ptr<Platform> makeNativePlatform()
{
    return std::make_unique<WindowsPlatform>();
}
