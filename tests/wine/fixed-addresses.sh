#!/bin/sh
# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# The "wine" of the tests starts a process without address space randomization (bin/wine says why).
set -eu
setarch -R true 2>/dev/null || {
    echo "This system does not allow it"
    exit 77
}
personality=$(KESTRELPACK_TEST_WINE=$(command -v cat) wine /proc/self/personality)
echo "personality: $personality"
[ $((0x$personality & 0x40000)) -ne 0 ] # ADDR_NO_RANDOMIZE, <sys/personality.h>
