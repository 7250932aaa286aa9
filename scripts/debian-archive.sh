# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Sourced by the fetch scripts (bash): a private configuration of apt, which uses the machine's archives.

# Writes copies of the machine's apt sources, with only the type TYPE (deb or deb-src). If SUITE is given, it
# replaces their suites.
# write_private_sources FOLDER TYPE [SUITE]
write_private_sources() {
    local file base
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ -r "$file" ] || continue
        base=$(basename "$file" .list)
        # Sources often have a deb and a deb-src entry, which would become equal lines; sort -u removes one.
        sed -nE "s/^[[:space:]]*deb(-src)?([[:space:]])/$2\\2/p" "$file" | sort -u \
            >"$1/kestrelpack-$base.list"
        [ -z "${3-}" ] || sed -Ei "s/^([a-z-]+[[:space:]]+(\\[[^]]*\\][[:space:]]+)?[^[:space:]]+[[:space:]]+)[^[:space:]]+/\\1$3/" \
            "$1/kestrelpack-$base.list"
    done
    for file in /etc/apt/sources.list.d/*.sources; do
        [ -r "$file" ] || continue
        sed -E "s/^[Tt][Yy][Pp][Ee][Ss]:.*/Types: $2/${3:+; s/^[Ss][Uu][Ii][Tt][Ee][Ss]:.*/Suites: $3/}" \
            "$file" >"$1/kestrelpack-$(basename "$file")"
    done
}

# Writes an apt configuration that keeps all state in the given folder. It removes the hooks that other packages
# run after an update: they are not needed here, and an ordinary user may not run them.
write_apt_configuration() {
    cat >"$1/apt.conf" <<CONFIGURATION
#clear APT::Update::Pre-Invoke;
#clear APT::Update::Post-Invoke;
#clear APT::Update::Post-Invoke-Success;
Dir::Etc::SourceList "/dev/null";
Dir::Etc::SourceParts "$1/sources";
Dir::State::Lists "$1/lists";
Dir::Cache "$1/cache";
APT::Get::List-Cleanup "false";
Acquire::Languages "none";
Acquire::Retries "3";
CONFIGURATION
}

# Prepares the folder for `apt-get -c FOLDER/apt.conf`, and creates FOLDER/download for the downloads.
# prepare_archive FOLDER TYPE [SUITE]
prepare_archive() {
    mkdir -p "$1"/{sources,lists/partial,cache/archives/partial,download}
    # apt's unprivileged download process must be able to enter the folder and to write there.
    chmod 755 "$1"
    if [ "$(id -u)" = 0 ] && id _apt >/dev/null 2>&1; then
        chown _apt "$1/download"
    fi
    write_private_sources "$1/sources" "$2" "${3-}"
    write_apt_configuration "$1"
}

# Prints the last error that apt wrote, on one line.
apt_complaint() {
    grep -hE '^(E|Err|W):' "$1" | tail -n 1 | tr -d '\n'
}
