#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
# usage: symbols.sh check|update LIBRARY LIST   compares what LIBRARY exports with LIST, or writes LIST
#        symbols.sh plugin LIBRARY              checks that a plug-in exports its entry points alone
set -euo pipefail
export LC_ALL=C
way=$1 library=$2

# Prints the type and the name of each exported symbol, without the nodes and suffixes of symbol versions.
exported() { nm -D --defined-only "$library" | awk '$2 != "A" { sub(/@.*/, "", $3); print $2, $3 }'; }

# Inline functions and template instances are weak and vary with the compiler. Vtables and type information are weak
# too, but belong to the classes; those of the standard library do not.
listed() {
    local names
    names=$(exported | awk '$1 ~ /^[TDBR]$/ || ($1 == "V" && $2 ~ /^_ZT[VIS]/ && $2 !~ /^_ZT[VIS]N?(St|9__gnu_cxx)/) { print $2 }' | sort)
    paste <(echo "$names") <(c++filt <<<"$names")
}

case $way in
check)
    if ! diff -u "$3" <(listed); then
        echo "$(basename "$library") exports other symbols than $3 lists (- is missing, + is new)."
        echo "Programs depend on them: export what is missing again and hide what should not be new."
        echo "If the change is deliberate, run ./dev symbols and commit the lists."
        exit 1
    fi
    ;;
update) listed >"$3" ;;
plugin)
    leaked=$(exported | cut -d ' ' -f 2 | grep -v '^qt_plugin_' | c++filt || true)
    if [ -n "$leaked" ]; then
        head -n 10 <<<"$leaked"
        echo "$(basename "$library") exports $(wc -l <<<"$leaked") symbols that can clash with those of another plug-in."
        echo "The first are above. Hide them: a plug-in exports nothing but qt_plugin_*."
        exit 1
    fi
    ;;
esac
