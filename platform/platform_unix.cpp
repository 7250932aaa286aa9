// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/platform.h"

#include "helpers/pe/iconofprogram.h"
#include "platform/trust_unix.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QThread>

#ifdef __linux__
#include <csignal>

#include <sys/prctl.h>
#endif

namespace {

class UnixPlatform final : public Platform
{
public:
    // There is no shell to ask, so the icon comes out of the file's own resources: the first group's
    // largest image. (The preference for the small icon is the Windows shell's way.)
    ExtractedIcon extractIcon(const QString &executable) override
    {
        const auto icon = pe::iconOfProgram(QFile::encodeName(executable).toStdString());
        if (icon.hasError() || !icon.value()) {
            return {ExtractedIcon::Outcome::NoIcon, {}};
        }
        const pe::Bytes &bytes = *icon.value();
        const QImage image = QImage::fromData(bytes.data(), static_cast<int>(bytes.size()), "ICO");
        return {ExtractedIcon::Outcome::Extracted, image.convertToFormat(QImage::Format_ARGB32)};
    }

    QString refusalToUse(const QString &path) override { return untrustedFileReason(path); }

    // A helper must not go on writing when its job was killed.
    void prepareStart(QProcess &process) override
    {
#ifdef __linux__
        process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
#else
        Q_UNUSED(process)
#endif
    }

    // What the engine starts this way are parts of Windows; looking for them here finds nothing.
    void startDetached(const QString &program) override
    {
        QProcess::startDetached(program, {}, {}, nullptr);
    }

    // There is no icon cache.
    void notifyAssociationsChanged() override {}

    void pause(std::chrono::milliseconds duration) override
    {
        QThread::msleep(static_cast<unsigned long>(duration.count()));
    }

    QString nativePath(const QString &path) override
    {
        return QDir::toNativeSeparators(path);
    }
};

} // namespace

std::unique_ptr<Platform> makeNativePlatform()
{
    return std::make_unique<UnixPlatform>();
}
