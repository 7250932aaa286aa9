// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "platform/nativeplatform.h"

#include "helpers/pe/iconofprogram.h"
#include "platform/nativepath.h"
#include "platform/trust_unix.h"

#include <QProcess>

#ifdef __linux__
#include <csignal>

#include <sys/prctl.h>
#endif

// There is no Windows shell here, so the icon is read from the file's resources: the largest image
// of the first group. (The Windows shell prefers the small icon.)
ExtractedIcon NativePlatform::extractIcon(const QString &executable)
{
    const auto icon = pe::iconOfProgram(toNativePath(executable));
    if (icon.hasError() || !icon.value()) {
        return {ExtractedIcon::Outcome::NoIcon, {}};
    }
    const pe::Bytes &bytes = *icon.value();
    const QImage image = QImage::fromData(bytes.data(), static_cast<int>(bytes.size()), "ICO");
    return {ExtractedIcon::Outcome::Extracted, image.convertToFormat(QImage::Format_ARGB32)};
}

QString NativePlatform::reasonNotToUse(const QString &path)
{
    return untrustedFileReason(path);
}

// A helper must not continue to write after its job was killed.
void NativePlatform::prepareStart(QProcess &process)
{
#ifdef __linux__
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
#else
    Q_UNUSED(process)
#endif
}

// There is no icon cache to refresh.
void NativePlatform::notifyAssociationsChanged() {}
