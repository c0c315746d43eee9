# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later
# shellcheck shell=bash

# What ./run, ./test and .ci/run share: one line a stage on standard error, the rest in a log under build/logs.
# To be sourced, with "set -euo pipefail" in force; changes to the root of the source tree and remembers in
# $caller_dir where the caller was.
# shellcheck disable=SC2034 # for those who source this
readonly caller_dir=$PWD

source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
readonly source_dir
cd "$source_dir" || exit
readonly log_dir=$source_dir/build/logs
readonly bridge_port=8765
readonly bridge_dir=$source_dir/tools/demo-bridge

stage() { printf '==> %s\n' "$*" >&2; }
note() { printf '    %s\n' "$*" >&2; }

die() {
    printf '%s: %s\n' "${0##*/}" "$1" >&2
    exit "${2:-1}"
}

# Whole seconds as people write them.
duration() { (($1 < 60)) && printf '%d s' "$1" || printf '%d min %02d s' $(($1 / 60)) $(($1 % 60)); }

# Tells how far the build in the log is: a line that is renewed on a terminal, one every 20 seconds elsewhere.
report_progress() {
    local log=$1 started=$SECONDS every=20 form='    %s\n' silence step elapsed
    trap '' INT
    if [[ -t 2 ]]; then every=1 form='\r\033[K    %s'; fi
    exec {silence}<> <(:)
    while ! read -rt "$every" -u "$silence"; do
        step=$(grep -oE '^\[[0-9]+/[0-9]+\]' "$log" | tail -n 1 | tr -d '[]') || true
        elapsed=$(duration $((SECONDS - started)))
        # shellcheck disable=SC2059 # the form is one of the two above
        if [[ $step ]]; then
            printf "$form" "$((${step%/*} * 100 / ${step#*/})) % ($step), $elapsed" >&2
        else
            printf "$form" "$elapsed" >&2
        fi
    done
}

# run_stage TITLE LOG COMMAND...: one line, the command's output in build/logs/LOG.log; on failure the last lines of
# it and where it is. The status is the command's.
run_stage() {
    local title=$1 log=$log_dir/$2.log status=0 reporter started=$SECONDS
    shift 2
    mkdir -p "$log_dir"
    stage "$title"
    : > "$log"
    report_progress "$log" &
    reporter=$!
    "$@" > "$log" 2>&1 < /dev/null || status=$?
    kill "$reporter" 2> /dev/null || true
    wait "$reporter" 2> /dev/null || true
    [[ ! -t 2 ]] || printf '\r\033[K' >&2
    if ((status != 0)); then
        printf '%s failed with status %d. The end of its output:\n' "${title%...}" "$status" >&2
        tail -n 30 "$log" | sed 's/^/    /' >&2
        printf 'All of it: %s\n' "${log#"$source_dir"/}" >&2
    elif ((SECONDS - started >= 20)); then
        note "done in $(duration $((SECONDS - started)))"
    fi
    return "$status"
}

# Two commands started at once must not build in the same folder: the second one waits. Held until the lock is let
# go or the script ends.
lock_build() {
    mkdir -p "$source_dir/build"
    exec {build_lock}> "$source_dir/build/.lock"
    flock --nonblock "$build_lock" && return
    stage 'Waiting for another build to end'
    flock "$build_lock"
}
unlock_build() { exec {build_lock}>&-; }

# build_preset PRESET [CMAKE ARGUMENTS]: configures when that can change anything, and builds.
build_preset() {
    local preset=$1 folder=$source_dir/build/$1
    shift
    local stamp=$folder/.configured
    if [[ ! -f $folder/build.ninja || $(cat "$stamp" 2> /dev/null) != "$*" || CMakePresets.json -nt $stamp ]]; then
        run_stage "Configuring ($preset)" "configure-$preset" cmake --preset "$preset" "$@"
        printf '%s\n' "$*" > "$stamp"
    fi
    run_stage "Building ($preset)" "build-$preset" cmake --build --preset "$preset"
}

# The demo bridge's one dependency, from the registry that npm is set to use.
install_bridge_modules() {
    local installed=$bridge_dir/node_modules/.package-lock.json
    [[ $installed -nt $bridge_dir/package-lock.json ]] && return
    run_stage 'Fetching the packages of the demo bridge' npm \
        npm ci --prefix "$bridge_dir" --no-audit --no-fund --no-update-notifier
    touch "$installed"
}

# Whether somebody listens on the bridge's port, on either loopback address.
bridge_listens() {
    (: < "/dev/tcp/127.0.0.1/$bridge_port") 2> /dev/null || (: < "/dev/tcp/::1/$bridge_port") 2> /dev/null
}

# Starts the demo bridge and waits until it takes connections; its process id is left in $bridge_pid. Where the
# environment of a test surrounds this, it ends with it; elsewhere stop_demo_bridge is to be called.
start_demo_bridge() {
    local log=$log_dir/demo-bridge.log silence
    mkdir -p "$log_dir"
    # It goes with this shell, even should that be killed.
    LOOMRA_BRIDGE_PORT=$bridge_port setpriv --pdeathsig TERM node "$bridge_dir/bridge.js" > "$log" 2>&1 < /dev/null &
    bridge_pid=$!
    exec {silence}<> <(:)
    until bridge_listens; do
        if ! kill -0 "$bridge_pid" 2> /dev/null; then
            tail -n 5 "$log" >&2
            die "the demo bridge did not start: ${log#"$source_dir"/}"
        fi
        read -rt 0.05 -u "$silence" || true
    done
    exec {silence}<&-
}

stop_demo_bridge() {
    [[ -n ${bridge_pid:-} ]] || return 0
    kill -TERM "$bridge_pid" 2> /dev/null || true
    wait "$bridge_pid" 2> /dev/null || true
    bridge_pid=''
}

# Runs a command, passes on the signals that would end this shell, and returns the command's own status.
run_and_pass_signals() {
    local command signal passed status
    # A shell makes its background children deaf to the interrupt key.
    env --default-signal=INT,QUIT "$@" <&0 &
    command=$!
    for signal in INT TERM HUP; do
        # shellcheck disable=SC2064 # the values of now are meant
        trap "passed=1; kill -$signal $command 2> /dev/null || true" "$signal"
    done
    while true; do
        passed='' status=0
        wait "$command" || status=$?
        [[ -n $passed ]] || break
    done
    trap - INT TERM HUP
    return "$status"
}

# tracked_files [PATTERN...]: the files of the source tree, ended by zero bytes. The owner of a checkout in a container
# is often not who works in it, which git refuses unless told otherwise.
tracked_files() { git -c safe.directory="$source_dir" ls-files -z -- "$@"; }
