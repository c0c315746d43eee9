# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later
# shellcheck shell=bash

# Functions for scripts that use the Debian package in a chroot, which is made by scripts/debian-root.sh. Source this file
# after scripts/lib.sh and scripts/build-package.
#
# shellcheck disable=SC2034,SC2154

package=$(echo build/package/tovictl_*.deb)
readonly package

# prepare_package_root NAME SUBJECT PACKAGE...: makes the chroot NAME of Debian 12 with what the package depends on, of
# alternatives the first, and with these packages. The package itself is not installed.
prepare_package_root() {
    release=bookworm root_name=$1 subject=$2
    mapfile -t packages < <(dpkg-deb --field "$package" Depends | tr ',' '\n' | sed -E 's/[|(].*//; s/ //g')
    packages+=("${@:3}")
    # shellcheck source=scripts/debian-root.sh
    source scripts/debian-root.sh
    prepare_root
    ((${#as_root[@]} > 0)) || no_test 'windows need /proc, and mounts are not allowed here'
}

# Copies the package, and the scripts that use it, to /src. They start the installed bridge.
copy_package() {
    "${as_root[@]}" rm -rf "$root/src"
    "${as_root[@]}" mkdir -p "$root/src/tools"
    # Every installed system has this file, but a new chroot has none.
    printf '127.0.0.1 localhost\n::1 localhost\n' | "${as_root[@]}" tee "$root/etc/hosts" > /dev/null
    "${as_root[@]}" ln -s /usr/libexec/tovi-forkeldaos/sdk-bridge "$root/src/tools/sdk-bridge"
    tar --owner=0 --group=0 -cf - scripts tests/support "$package" | "${as_root[@]}" tar -C "$root/src" -xf -
}
