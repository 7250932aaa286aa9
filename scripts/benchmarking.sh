# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Sourced by the bench scripts.

now() { date +%s%N; }
seconds_since() { echo "scale=3; ($(now) - $1) / 1000000000" | bc; }

# median < FILE: of lines, each a number
median() {
    sort -n | awk '{ value[NR] = $1 }
        END { printf "%.10g\n", (value[int((NR + 1) / 2)] + value[int((NR + 2) / 2)]) / 2 }'
}

# make_folder FOLDER MEGABYTES PROGRAM: the program, and files that this machine has anyway.
make_folder() {
    mkdir "$1"
    cp "$3" "$1/"
    find /usr/lib /usr/share -xdev -type f -size -20M 2>/dev/null | sort |
        while [ "$(du -sm "$1" | cut -f1)" -lt "$2" ] && read -r file; do
            mkdir -p "$1/$(dirname "$file")"
            cp "$file" "$1/$file" 2>/dev/null || true
        done
}
