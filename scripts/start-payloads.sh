# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# The folders that scripts/bench-start packs; that script sources this file.

# choose_files MEGABYTES COUNT SMALLEST LARGEST: prints files of this machine, always the same ones, until there are
# so many megabytes and so many files; the two sizes are written as for find
choose_files() {
    find /usr/lib /usr/share -xdev -type f -size "+$3" -size "-$4" -printf '%s %p\n' |
        LC_ALL=C sort -k 2 | awk -v wanted="$1" -v count="$2" '
            sum < wanted * 1000000 || files < count {
                print substr($0, index($0, " ") + 1); sum += $1; ++files
            }
            END { exit sum < wanted * 1000000 || files < count }' || fail "this machine has too few files"
}

# copy_files PREFIX FILES [SUFFIX]: copies the files that standard input lists; numbers are their names. Each folder
# PREFIX<number>SUFFIX gets so many files.
copy_files() {
    number=0
    while read -r file; do
        folder=$1$((number / $2))${3-}
        [ $((number % $2)) -gt 0 ] || mkdir -p "$folder"
        cp "$file" "$folder/$number.bin"
        number=$((number + 1))
    done
}

# make_payload NAME FOLDER PROGRAM
make_payload() {
    mkdir -p "$2"
    cp "$3" "$2/"
    case $1 in
        small) choose_files 10 0 1M 4M | copy_files "$2/data" 50 ;;
        large)
            choose_files 105 0 1M 8M | tr '\n' '\0' | xargs -0 cat | head -c 100000000 >"$2/data.bin"
            ;;
        many)
            choose_files 400 0 700k 3M | copy_files "$2/data" 50
            [ "$(find "$2" -type f | wc -l)" -gt 300 ] || fail "this machine has too few files"
            ;;
        # As scripts and their data lie in an application of many packages.
        files) choose_files 0 5000 1k 32k | copy_files "$2/resources/app/modules/package" 20 /lib ;;
    esac
}

# facts_of FOLDER: prints the numbers of files and bytes, in the same form as the inner program
facts_of() {
    find "$1" -type f -printf '%s\n' | awk '{ sum += $1 } END { printf "%d %.0f\n", NR, sum }'
}
