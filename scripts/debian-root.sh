# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later
# shellcheck shell=bash

# Functions for tests in a chroot of a Debian release, by default of Debian's testing release, for packages that Debian
# 12 does not have. The chroot is installed from this machine's own mirror and kept in build/ for later runs. Source this
# file after scripts/lib.sh, with these variables set:
#
#   root_name  names the chroot, build/NAME-root, and its log
#   packages   an array of the packages to install
#   subject    what is tested, for messages, such as "the real libwhisper"
#   anew       install a new chroot; may be empty or unset
#   release    the release; may be unset
#
# If TOVICTL_ROOT_CACHE names a folder, new chroots are kept there as archives for a week, and other clones unpack them
# instead of installing their own.
#
# shellcheck disable=SC2154

readonly release=${release:-forky}
readonly root=$source_dir/build/$root_name-root
readonly root_stamp=$root.made source_list=$root.sources root_log=$root_name-root
readonly no_root=77

# no_test REASON: ends the script with status 77.
no_test() {
    printf '%s\n' "==> NOT TESTED with $subject: $1" >&2
    exit "$no_root"
}

# Commands in the chroot run as root, for other users in a user namespace. A mount namespace keeps the mounts inside. In
# a container that allows no mounts, root goes without.
as_root=()
if ((EUID != 0)); then
    as_root=(unshare --map-root-user --map-auto --mount)
elif unshare --mount true 2> /dev/null; then
    as_root=(unshare --mount)
fi

# A command prefix that runs the rest in the chroot with a clean environment. It stays one process, so that signals
# reach the command.
# shellcheck disable=SC2016 # expanded by the inner shell
enter_root=("${as_root[@]}" bash -c '
    root=$1 isolated=$2
    shift 2
    if [[ $isolated ]]; then for tree in /proc /dev; do mount --rbind "$tree" "$root$tree"; done; fi
    exec env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C.UTF-8 chroot "$root" "$@"
' - "$root" "${as_root[*]}")

in_root() { "${enter_root[@]}" "$@"; }

# bootstrap [ARGUMENTS OF MMDEBSTRAP]
bootstrap() {
    local proxies
    mapfile -t proxies < <(apt-config dump | grep -E '^Acquire::https?::Proxy ')
    "${as_root[@]}" rm -rf "$root" &&
        "${as_root[@]}" mmdebstrap --mode=root --variant=minbase --include="${packages[*]}" \
            "${proxies[@]/#/--aptopt=}" "$@" "$release" "$root" "$source_list"
}

make_root() {
    bootstrap && return
    # The package lists of a frozen mirror expire. Only their date is ignored; signatures are still checked.
    grep -q 'Release file for .* is expired' "$log_dir/$root_log.log" || return
    echo "The mirror's package lists have expired; trying again without the check of their date."
    bootstrap --aptopt='Acquire::Check-Valid-Until "false"'
}

# find_archive RECIPE: whether the cache has a chroot of this recipe. Stores its file name in $archive, which is empty
# without a cache.
find_archive() {
    archive=''
    [[ ${TOVICTL_ROOT_CACHE:-} ]] || return
    mkdir -p "$TOVICTL_ROOT_CACHE"
    find "$TOVICTL_ROOT_CACHE" -maxdepth 1 -name '*.tar.zst*' -mtime +6 -delete
    archive=$TOVICTL_ROOT_CACHE/$root_name-$(sha256sum <<< "$1" | cut -c 1-16).tar.zst
    [[ ! ${anew:-} && -f $archive ]]
}

unpack_root() {
    "${as_root[@]}" rm -rf "$root" && "${as_root[@]}" mkdir "$root" &&
        zstd --decompress --stdout "$archive" | "${as_root[@]}" tar --numeric-owner -C "$root" -xpf -
}

pack_root() {
    local unfinished=$archive.$$
    "${as_root[@]}" tar --numeric-owner -C "$root" -cf - . | zstd --fast -T0 --quiet -o "$unfinished" &&
        mv "$unfinished" "$archive" && return
    rm -f "$unfinished"
    return 1
}

install_root() {
    run_stage "Installing a chroot of Debian $release for $subject" "$root_log" make_root ||
        no_test "the chroot of Debian $release could not be installed"
    ! grep -q 'lists have expired' "$log_dir/$root_log.log" || note "the mirror's package lists have expired"
    [[ ! $archive ]] || run_stage 'Keeping it for other clones' "$root_log-archive" pack_root || note 'not kept'
}

# Installs the chroot if there is none, or one with other packages. Two tests must not use it at once: the lock is held
# until the script ends.
prepare_root() {
    local recipe
    mkdir -p build
    exec {root_lock}> "$root.lock"
    if ! flock --nonblock "$root_lock"; then
        stage "Waiting for another test with $subject to end"
        flock "$root_lock"
    fi
    scripts/debian-source "$release" > "$source_list" || no_test 'apt has no mirror of this release'
    recipe=$(cat "$source_list" && printf '%s\n' "${packages[@]}")
    [[ ! ${anew:-} && -f $root_stamp && $(cat "$root_stamp") == "$recipe" ]] && return
    scripts/install-packages chroot || no_test 'packages could not be installed'
    "${as_root[@]}" true || no_test 'user namespaces are not allowed here; try again as root'
    rm -f "$root_stamp"
    if ! find_archive "$recipe" ||
        ! run_stage "Unpacking a chroot of Debian $release for $subject" "$root_log" unpack_root; then
        install_root
    fi
    printf '%s\n' "$recipe" > "$root_stamp"
}
