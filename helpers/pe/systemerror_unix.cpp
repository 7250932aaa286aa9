// SPDX-FileCopyrightText: 2026 The Kestrelpack developers
// SPDX-License-Identifier: MIT

#include "helpers/pe/systemerror.h"

#include <cerrno>
#include <cstring>

namespace pe {

Error systemError(ErrorKind kind, const char *what)
{
    return {kind, what, std::strerror(errno)};
}

} // namespace pe
