# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later
# shellcheck shell=bash

# What bench/run and bench/profile share. To be sourced after scripts/lib.sh, which sets $source_dir.
# shellcheck disable=SC2154

readonly benchmarks=(version startup prompt requests rows idle voice whisper)
readonly bench_programs=$source_dir/build/bench/bin

is_benchmark() { [[ " ${benchmarks[*]} " == *" $1 "* ]]; }

prepare_benchmarks() {
    scripts/install-packages build run display test
    lock_build
    build_preset bench
    unlock_build
}

# in_surroundings NAME COMMAND...: in those that a benchmark needs. The cache lies in their home whatever the libraries
# think of HOME, so that nothing of the caller's own counts.
in_surroundings() {
    local needs=(display net)
    case $1 in
    version | whisper) needs=(home) ;;
    requests) needs=(net) ;;
    voice) needs=(bus audio) ;;
    esac
    shift
    # shellcheck disable=SC2016 # for the shell inside
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
    in_surroundings "$name" "$bench_programs/bench_$name" "$@"
}
