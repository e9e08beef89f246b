# SPDX-License-Identifier: LGPL-2.1-or-later
# Completion of tidel for bash. The program itself knows its commands, options and channels.

_tidel() {
    local word meaning current=${COMP_WORDS[COMP_CWORD]} words
    words=("${COMP_WORDS[@]:1:COMP_CWORD}")
    # What is typed so far may be quoted.
    local quote=
    case $current in
    \"* | \'*) quote=${current:0:1} ;;
    esac
    current=${current#"$quote"}
    [ -n "$quote" ] || current=${current//\\/}
    words[COMP_CWORD - 1]=$current
    COMPREPLY=()
    while IFS=$'\t' read -r word meaning; do
        [ -n "$quote" ] || word=$(printf '%q' "$word")
        COMPREPLY+=("$word")
    done < <(tidel --complete "${words[@]}" 2>/dev/null)
}
# Where the program knows nothing, such as for files, bash completes.
complete -o default -F _tidel tidel
