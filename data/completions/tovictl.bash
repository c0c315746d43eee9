# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later
# shellcheck shell=bash

# Completion of tovictl for bash. A test compares the arguments with the usage text.

_tovictl_models() { timeout 5 "${COMP_WORDS[0]}" models 2> /dev/null < /dev/null; }

_tovictl() {
    # Words as they are typed: bash splits them at the colons of model names and at "=".
    local current=${COMP_LINE:0:COMP_POINT} before words word request='' candidates=()
    current=${current##*[[:space:]]}
    read -ra words <<< "${COMP_LINE:0:COMP_POINT-${#current}}"
    before=${words[-1]}

    for word in "${words[@]:1}"; do
        case $word in
        -p | --prompt | --prompt=*) request=prompt ;;
        test | uninstall | models | help) request=${request:-$word} ;;
        esac
    done

    case $request in
    '')
        ((${#words[@]} > 1)) || candidates=(
            -o --omni-bar -m --main -t --tray --voice-test --prompt models test uninstall help -h --help -V --version
        )
        ;;
    prompt)
        case $before in
        -p | --prompt | --timeout) ;;
        -m | --model) mapfile -t candidates < <(_tovictl_models) ;;
        *) candidates=(-m --model --timeout) ;;
        esac
        ;;
    test) candidates=(--chat --json --help) ;;
    uninstall) candidates=(-y --yes --keep-user-files --help) ;;
    esac

    # readline replaces only what follows the last break.
    local typed=${COMP_WORDS[COMP_CWORD]} prefix=$current
    [[ $typed == [:=] ]] && typed=''
    prefix=${current%"$typed"}
    COMPREPLY=()
    for word in "${candidates[@]}"; do
        [[ $word != "$current"* ]] || COMPREPLY+=("${word#"$prefix"}")
    done
}

complete -F _tovictl tovictl
