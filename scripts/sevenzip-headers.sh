# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Sourced by what cross-builds programs from 7-Zip's sources (bash).

# 7-Zip names the system's headers in mixed case, which a case-sensitive file system does not find. Makes a <Name.h>
# in FOLDER for each, which includes the lower-case one.
# forward_headers SOURCES FOLDER
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
