# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later
# shellcheck shell=bash

# Functions that use the program on a virtual display as a person would: they type, wait and copy. For scripts that run
# in `tests/support/environment display net -- ...`. Source this file after scripts/lib.sh, with these variables set:
#
#   window_name  the window, for messages
#   ready_line   a pattern of the line that the program logs when it accepts prompts
#   screenshot   the file that take_screenshot writes
#   program_log  the file for the program's output
#
# shellcheck disable=SC2034,SC2154

readonly timeout=30 # seconds for each step

exec {silence}<> <(:)

# start_program COMMAND...: starts the program, stores its process id in $program, and waits until its window has the
# keyboard.
start_program() {
    env -C "$caller_dir" "$@" > "$program_log" 2>&1 < /dev/null &
    program=$!
    until_true "The $window_name" window_is_there
    until_true 'The keyboard focus' window_has_keyboard
}

stop_program() {
    kill -TERM "$program"
    wait "$program" 2> /dev/null || true
}

# until_true WHAT COMMAND...: repeats the command until it succeeds.
until_true() {
    local what=$1 end=$((SECONDS + timeout))
    shift
    until "$@"; do
        ((SECONDS < end)) || give_up "$what: not within $timeout seconds"
        kill -0 "$program" 2> /dev/null || give_up "$what: the program has ended"
        read -rt 0.05 -u "$silence" || true
    done
}

give_up() {
    take_screenshot || true
    printf '%s\nScreenshot: %s\nOutput of the program: %s\n' "$1" "${screenshot#"$source_dir"/}" \
        "${program_log#"$source_dir"/}" >&2
    tail -n 5 "$program_log" | sed 's/^/    /' >&2
    exit 1
}

take_screenshot() {
    mkdir -p "${screenshot%/*}"
    import -window root "$screenshot"
}

window_is_there() { window=$(xdotool search --onlyvisible --pid "$program" 2> /dev/null | head -n 1) && [[ $window ]]; }
# The window manager moves the focus while it maps a window, so both must agree.
window_has_keyboard() {
    [[ $(xdotool getactivewindow 2> /dev/null) == "$window" && $(xdotool getwindowfocus) == "$window" ]] && return
    xdotool windowactivate "$window" 2> /dev/null
    return 1
}
# A connection that the kernel has made would not be enough: on a busy machine the program processes keys before it
# notices the connection.
bridge_is_ready() { grep -q "$ready_line" "$program_log"; }
clipboard() { timeout 2 xclip -o -selection clipboard 2> /dev/null || true; }
clipboard_is_filled() { [[ $(clipboard) ]]; }
# The window is animated while it waits for a reply and while the reply appears.
window_is_at_rest() {
    local first
    first=$(import -window root rgb:- | cksum)
    read -rt 0.2 -u "$silence" || true
    [[ $(import -window root rgb:- | cksum) == "$first" ]]
}

# wait_for_reply PROMPT: waits until the bridge has replied to the prompt and stores the reply in $reply.
wait_for_reply() {
    reply=$(node "$source_dir/scripts/last-reply.js" "$1" "$timeout") || give_up 'No reply'
}

# copy_by_keys KEY...: presses the keys that copy the newest message and stores what they copied in $copied.
copy_by_keys() {
    until_true 'The end of the animations' window_is_at_rest
    xclip -selection clipboard < /dev/null > /dev/null 2>&1
    xdotool key --delay 100 "$@"
    until_true 'The copied message' clipboard_is_filled
    copied=$(clipboard)
}
