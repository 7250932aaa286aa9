# SPDX-FileCopyrightText: 2026 The Kestrelpack developers
# SPDX-License-Identifier: MIT
# Sourced after setup.sh by scripts that try things on a clean Debian, in a folder. They need root. The caller sets
# $root, the folder, and $log, and calls leave_clean_debian at its end, also after a failure.

# make_clean_debian: debootstrap's smallest system, of this machine's release and from its archive.
make_clean_debian() {
    release=$(. /etc/os-release && echo "$VERSION_CODENAME")
    archive=$(apt-get indextargets --format '$(CODENAME) $(COMPONENT) $(REPO_URI)' 'Created-By: Packages' |
        sed -n "s/^$release main //p" | head -n 1)
    [ -n "$archive" ] || fail "the apt sources have no archive of $release"
    debootstrap --variant=minbase "$release" "$root" "$archive" >>"$log" 2>&1 ||
        fail "debootstrap failed; see $log"
    mount --bind /dev "$root/dev"
    mount -t proc proc "$root/proc"
    rm -rf "$root/etc/apt/sources.list" "$root/etc/apt/sources.list.d"
    mkdir "$root/etc/apt/sources.list.d"
    printf 'deb %s %s main\n' "$archive" "$release" >"$root/etc/apt/sources.list.d/archive.list"
    printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d" # no services are started
    chmod 755 "$root/usr/sbin/policy-rc.d"
    for file in /etc/apt/apt.conf.d/*; do # a proxy, if this machine has one
        ! grep -qi proxy "$file" || cp "$file" "$root/etc/apt/apt.conf.d/"
    done
    cp /etc/resolv.conf /etc/hosts "$root/etc/"
}

leave_clean_debian() {
    for mounted in "$root/proc" "$root/dev"; do
        ! mountpoint -q "$mounted" || umount "$mounted"
    done
}

# inside COMMAND...: runs it there, with nothing of this machine's environment.
inside() {
    chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 \
        DEBIAN_FRONTEND=noninteractive "$@"
}
