// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "preparation/programicon.h"

#include "helpers/pe/icongroups.h"
#include "helpers/pe/iconofprogram.h"
#include "helpers/pe/resourceedit.h"
#include "platform/nativepath.h"

QByteArray iconFileOfProgram(const QString &path)
{
    const auto icon = pe::iconGroupOfProgram(toNativePath(path));
    if (icon.hasError() || !icon.value()) {
        return {};
    }
    return QByteArray(reinterpret_cast<const char *>(icon.value()->data()),
                      static_cast<qsizetype>(icon.value()->size()));
}

std::optional<Message> setIconOfProgram(const QString &path, const QByteArray &icon)
{
    const auto failure = [](const pe::Error &error) {
        return Message{"the icon cannot be added: %1",
                       {QString::fromStdString(
                           error.system.empty() ? error.what : error.what + ": " + error.system)}};
    };
    const auto images = pe::parseIcoFile({reinterpret_cast<const std::uint8_t *>(icon.data()),
                                          static_cast<std::size_t>(icon.size())});
    if (images.hasError()) {
        return failure(images.error());
    }
    const pe::NativePath program = toNativePath(path);
    const auto outcome
        = pe::editResources(program, program,
                            [&images](pe::ResourceTree &tree, const pe::File &file,
                                      const pe::PeHeaders &headers) -> pe::Result<bool> {
                                const auto set = pe::setIconGroup(tree, file, headers,
                                                                  {u"MAINICON", 0}, images.value());
                                if (set.hasError()) {
                                    return set.error();
                                }
                                return true;
                            });
    return outcome.hasError() ? std::optional(failure(outcome.error())) : std::nullopt;
}
