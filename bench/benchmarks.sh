# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later
# shellcheck shell=bash

# Functions that bench/run and bench/profile share. Source this file after scripts/lib.sh, which sets $source_dir.
# shellcheck disable=SC2154

readonly benchmarks=(version startup validation mainwindow prompt menu sheet requests files rows table markdown idle voice countdown level whisper bridge)
readonly bench_programs=$source_dir/build/bench/bin

is_benchmark() { [[ " ${benchmarks[*]} " == *" $1 "* ]]; }

prepare_benchmarks() {
    scripts/install-packages build run display test
    lock_build
    install_bridge_modules
    build_preset bench
    unlock_build
}

# in_environment NAME COMMAND...: runs the command in the private environment that the benchmark needs. The cache folder
# is set explicitly, so that no library uses the caller's cache.
in_environment() {
    local needs=(display net)
    case $1 in
    version | files | whisper) needs=(home) ;;
    requests | bridge) needs=(net) ;;
    voice) needs=(bus audio) ;;
    level) needs=(display net audio) ;;
    esac
    shift
    # shellcheck disable=SC2016 # expanded by the inner shell
    tests/support/environment "${needs[@]}" -- bash -c 'XDG_CACHE_HOME=$HOME/.cache exec "$@"' - "$@"
}

# run_benchmark NAME [ARGUMENTS...]
run_benchmark() {
    local name=$1
    shift
    if [[ $name == whisper && ! -x $bench_programs/bench_whisper ]]; then
        scripts/test-whisper --bench
        return
    fi
    if [[ $name == bridge ]]; then
        in_environment "$name" node bench/bridge/bridge.js && in_environment "$name" node bench/bridge/sessions.js
        return
    fi
    in_environment "$name" "$bench_programs/bench_$name" "$@"
}

# write_page: makes the page build/bench/figures.md of everything that was measured on this machine.
write_page() {
    local name files=() facts=$log_dir/bench-machine.facts page=$source_dir/build/bench/figures.md
    for name in "${benchmarks[@]}"; do
        [[ ! -s $log_dir/bench-$name.figures ]] || files+=("$log_dir/bench-$name.figures")
    done
    if ((${#files[@]} == 0)); then
        note 'no page: nothing has been measured yet'
        return 1
    fi
    in_environment page "$bench_programs/bench_machine" > "$facts" 2> "$log_dir/bench-machine.log" &&
        node bench/page.js "$facts" "${files[@]}" > "$page.new" && mv "$page.new" "$page" &&
        note "page: ${page#"$source_dir"/}"
}
