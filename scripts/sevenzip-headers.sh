# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Sourced by the scripts that cross-build programs from 7-Zip's sources (bash).

# 7-Zip writes the names of system headers in mixed case; a case-sensitive file system does not find them.
# forward_headers SOURCES FOLDER: makes in FOLDER, for each of them, a <Name.h> that includes the lower-case header.
forward_headers() {
    local header lower
    mkdir -p "$2"
    grep -rhoE '#[[:space:]]*include[[:space:]]*<[A-Za-z0-9_]+\.h>' "$1/C" "$1/CPP" \
        --include='*.h' --include='*.c' --include='*.cpp' --include='*.rc' |
        sed -E 's/.*<(.*)>/\1/' | sort -u | while read -r header; do
        lower=${header,,}
        if [ "$header" != "$lower" ]; then
            echo "#include <$lower>" >"$2/$header"
        fi
    done
}
