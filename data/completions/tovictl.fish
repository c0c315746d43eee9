# SPDX-FileCopyrightText: 2026 The tovictl developers
# SPDX-License-Identifier: GPL-2.0-or-later

# Completion of tovictl for fish. A test compares the arguments with the usage text.

function __tovictl_prompts
    string match -qr -- '^(-p|--prompt(=.*)?)$' (commandline -opc)
end

function __tovictl_is_first
    test (count (commandline -opc)) -eq 1
end

function __tovictl_models
    set -l program (commandline -opc)[1]
    timeout 5 $program models 2>/dev/null </dev/null
end

complete -c tovictl -f

complete -c tovictl -n __tovictl_is_first -s o -l omni-bar -d 'Open the OmniBar (default)'
complete -c tovictl -n __tovictl_is_first -s m -l main -d 'Open the full chat and settings window'
complete -c tovictl -n __tovictl_is_first -s t -l tray -d 'Open the tray view'
complete -c tovictl -n __tovictl_is_first -l voice-test -d 'Open the voice validation window'
complete -c tovictl -n __tovictl_is_first -l prompt -x -d 'Send one prompt to the running bridge'
complete -c tovictl -n __tovictl_is_first -s h -l help -d 'Show all arguments'
complete -c tovictl -n __tovictl_is_first -s V -l version -d 'Print the version'
complete -c tovictl -n __tovictl_is_first -a models -d 'List the available models'
complete -c tovictl -n __tovictl_is_first -a test -d 'Check bridge, display, microphone and models'
complete -c tovictl -n __tovictl_is_first -a uninstall -d 'Remove the program'
complete -c tovictl -n __tovictl_is_first -a help -d 'Show all arguments'

complete -c tovictl -n __tovictl_prompts -s m -l model -x -a '(__tovictl_models)' -d 'The model that replies'
complete -c tovictl -n __tovictl_prompts -l timeout -x -d 'Give up after this time, in seconds'

complete -c tovictl -n '__fish_seen_subcommand_from test' -l chat -d 'Send a real prompt too'
complete -c tovictl -n '__fish_seen_subcommand_from test' -l json -d 'Print for programs'
complete -c tovictl -n '__fish_seen_subcommand_from test' -l help -d 'List all options'

complete -c tovictl -n '__fish_seen_subcommand_from uninstall' -s y -l yes -d 'Remove the program and your files without asking'
complete -c tovictl -n '__fish_seen_subcommand_from uninstall' -l keep-user-files -d 'Keep your files'
complete -c tovictl -n '__fish_seen_subcommand_from uninstall' -l help -d 'List all options'
