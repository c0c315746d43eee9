# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later
# shellcheck shell=bash

# Functions that the scripts share. Each stage prints one line on standard error and writes the rest to a log under
# build/logs. Source this file with "set -euo pipefail" in effect: it changes to the root of the source tree and keeps
# the caller's working directory in $caller_dir.
# shellcheck disable=SC2034 # the scripts that source this file use the variables
readonly caller_dir=$PWD

source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
readonly source_dir
cd "$source_dir" || exit
readonly log_dir=$source_dir/build/logs
readonly bridge_port=8765
readonly bridge_dir=$source_dir/tools/sdk-bridge

stage() { printf '==> %s\n' "$*" >&2; }
note() { printf '    %s\n' "$*" >&2; }

die() {
    printf '%s: %s\n' "${0##*/}" "$1" >&2
    exit "${2:-1}"
}

# duration SECONDS: prints a whole number of seconds as "42 s" or "3 min 05 s".
duration() { (($1 < 60)) && printf '%d s' "$1" || printf '%d min %02d s' $(($1 / 60)) $(($1 % 60)); }

# report_progress LOG: prints how far the build that writes this log has got, until the standard input ends: on a
# terminal in one line that is updated every second, elsewhere in a new line every 20 seconds.
report_progress() {
    local log=$1 started=$SECONDS every=20 format='    %s\n' step elapsed
    trap '' INT
    if [[ -t 2 ]]; then every=1 format='\r\033[K    %s'; fi
    # read returns more than 128 after the timeout.
    while read -rt "$every" || (($? > 128)); do
        step=$(grep -oE '^\[[0-9]+/[0-9]+\]' "$log" | tail -n 1 | tr -d '[]') || true
        elapsed=$(duration $((SECONDS - started)))
        # shellcheck disable=SC2059 # the format is one of the two above
        if [[ $step ]]; then
            printf "$format" "$((${step%/*} * 100 / ${step#*/})) % ($step), $elapsed" >&2
        else
            printf "$format" "$elapsed" >&2
        fi
    done
}

# run_stage TITLE LOG COMMAND...: prints the title and writes the command's output to build/logs/LOG.log. On failure it
# prints the end and the path of that log. The exit status is the command's.
run_stage() {
    local title=$1 log=$log_dir/$2.log status=0 lifeline reporter started=$SECONDS
    shift 2
    mkdir -p "$log_dir"
    stage "$title"
    : > "$log"
    # The reporter ends with this shell in any case: an unset variable in a function ends it right here.
    exec {lifeline}> >(report_progress "$log")
    reporter=$!
    "$@" > "$log" 2>&1 < /dev/null {lifeline}>&- || status=$?
    exec {lifeline}>&-
    wait "$reporter" || true
    [[ ! -t 2 ]] || printf '\r\033[K' >&2
    if ((status != 0)); then
        printf '%s failed with status %d. The end of its output:\n' "${title%...}" "$status" >&2
        tail -n 30 "$log" | sed 's/^/    /' >&2
        printf 'Full output: %s\n' "${log#"$source_dir"/}" >&2
    elif ((SECONDS - started >= 20)); then
        note "done in $(duration $((SECONDS - started)))"
    fi
    return "$status"
}

# Two scripts that run at once must not build in the same folder, so the second one waits. The lock is held until
# unlock_build or until the script ends.
lock_build() {
    mkdir -p "$source_dir/build"
    exec {build_lock}> "$source_dir/build/.lock"
    flock --nonblock "$build_lock" && return
    stage 'Waiting for another build to end'
    flock "$build_lock"
}
unlock_build() { exec {build_lock}>&-; }

# configure_preset PRESET [CMAKE ARGUMENTS]: runs CMake if it never ran for this preset, or with other arguments.
configure_preset() {
    local preset=$1 folder=$source_dir/build/$1
    shift
    local stamp=$folder/.configured
    [[ ! -f $folder/build.ninja || $(cat "$stamp" 2> /dev/null) != "$*" || CMakePresets.json -nt $stamp ]] || return 0
    run_stage "Configuring ($preset)" "configure-$preset" cmake --preset "$preset" "$@"
    printf '%s\n' "$*" > "$stamp"
}

# update_build_files PRESET: runs CMake again if one of its files has changed, so that ctest knows all tests. On failure
# it is run once more for its report.
update_build_files() {
    local update=(cmake --build --preset "$1" --target build.ninja)
    "${update[@]}" > /dev/null 2>&1 || run_stage "Configuring ($1)" "configure-$1" "${update[@]}"
}

# build_targets PRESET TARGET...
build_targets() {
    local preset=$1 title="Building ($1)"
    shift
    [[ $* == all ]] || title+=": $*"
    run_stage "$title" "build-$preset" cmake --build --preset "$preset" --target "$@"
}

# build_preset PRESET [CMAKE ARGUMENTS]: configures if needed and builds everything that the build preset names.
build_preset() {
    configure_preset "$@"
    run_stage "Building ($1)" "build-$1" cmake --build --preset "$1"
}

# Installs the bridge's dependencies from the registry that npm is configured to use.
install_bridge_modules() {
    local installed=$bridge_dir/node_modules/.package-lock.json
    [[ $installed -nt $bridge_dir/package-lock.json ]] && return
    run_stage 'Fetching the packages of the bridge' npm \
        npm ci --prefix "$bridge_dir" --no-audit --no-fund --no-update-notifier
    touch "$installed"
}

# Whether a process listens on the bridge's port, on either loopback address.
bridge_listens() {
    (: < "/dev/tcp/127.0.0.1/$bridge_port") 2> /dev/null || (: < "/dev/tcp/::1/$bridge_port") 2> /dev/null
}

# Starts the bridge, waits until it accepts connections and stores its process id in $bridge_pid. The caller ends
# it with stop_bridge; tests/support/environment ends it in any case.
start_bridge() {
    local log=$log_dir/sdk-bridge.log silence
    mkdir -p "$log_dir"
    # The bridge ends with this shell, even if the shell is killed.
    LOOMRA_BRIDGE_PORT=$bridge_port setpriv --pdeathsig TERM node "$bridge_dir/bridge.js" > "$log" 2>&1 < /dev/null &
    bridge_pid=$!
    exec {silence}<> <(:)
    until bridge_listens; do
        if ! kill -0 "$bridge_pid" 2> /dev/null; then
            tail -n 5 "$log" >&2
            die "the bridge did not start: ${log#"$source_dir"/}"
        fi
        read -rt 0.05 -u "$silence" || true
    done
    exec {silence}<&-
}

stop_bridge() {
    [[ -n ${bridge_pid:-} ]] || return 0
    kill -TERM "$bridge_pid" 2> /dev/null || true
    wait "$bridge_pid" 2> /dev/null || true
    bridge_pid=''
}

# run_and_pass_signals COMMAND...: runs the command, forwards the signals that would end this shell, and returns the
# command's exit status.
run_and_pass_signals() {
    local command signal passed status
    # A shell starts background commands with SIGINT and SIGQUIT ignored.
    env --default-signal=INT,QUIT "$@" <&0 &
    command=$!
    for signal in INT TERM HUP; do
        # shellcheck disable=SC2064 # expand now: both variables change later
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

# tracked_files [PATTERN...]: prints the tracked files, each followed by a null byte. In a container the checkout often
# belongs to another user, which git accepts only for a safe.directory.
tracked_files() { git -c safe.directory="$source_dir" ls-files -z -- "$@"; }
