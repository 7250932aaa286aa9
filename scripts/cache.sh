# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Sourced by the scripts that keep something for later builds of any checkout: $cache is the folder for it.
# (cmake/toolchain-windows-qt.cmake looks in the same folder.)
cache=${XDG_CACHE_HOME:-${HOME:?HOME is not set}/.cache}/kestrelpack
