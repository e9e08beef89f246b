#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
# usage: demo.sh TIDEL SOURCES
# Serves sample feeds on 127.0.0.1 and reads them with tidel in a temporary archive.
set -euo pipefail
tidel=$(realpath "$1")
sources=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME=$work/data XDG_RUNTIME_DIR=$work PAGER=cat
mkdir "$work/feeds"
cp "$sources"/tools/tidel/demo/* "$work/feeds"

show() {
    local word line='$ tidel'
    for word in "$@"; do
        [[ $word =~ ^[A-Za-z0-9:/._-]+$ ]] || word=${word@Q}
        line+=" $word"
    done
    printf '\n%s\n' "$line"
    "$tidel" "$@"
}

say() { printf '\n%s\n' "$*"; }

# Shows the answers of the server since the last call.
show_answers() {
    printf 'The server answered: '
    tail -n "+$((seen + 1))" "$work/requests" | awk '{ print $3 }' | sort | uniq -c | awk '{ printf "%s x %s  ", $1, $2 }'
    echo
    seen=$(wc -l <"$work/requests")
}

# The server ends when this script closes its input.
exec {server}> >(exec python3 "$sources/tests/server/feedserver.py" "$work/feeds" >"$work/requests")
until [ -s "$work/requests" ]; do sleep 0.05; done
seen=1
address=http://127.0.0.1:$(head -n 1 "$work/requests")
sed -i "s|https://orbit.example.com/audio/|$address/bytes/40960/|" "$work/feeds/orbit.xml"

say "Three feeds."
show subscribe "$address"/files/{courier.xml,kitchen.atom,orbit.xml}
show folder "Riverside Courier" News
show channels

say "The newest messages of all channels, and one of them. What was shown is read."
show messages --limit 8
show show https://kitchen.example.net/2026/barley-soup-for
show messages --unread --limit 3
show channels

say "Searching, keeping, listening."
show search soup
show favorite https://kitchen.example.net/2026/barley-soup-for
show enclosures https://orbit.example.com/88
show download https://orbit.example.com/88 --into "$work/downloads"
show stats

say "Nothing has changed: the server sends no document again."
show_answers
show refresh
show_answers

say "Feeds that are damaged, in other character sets, or hostile are read as far as they go."
cp "$sources"/tests/data/feeds/* "$work/feeds"
mapfile -t difficult < <(cd "$sources/tests/data/feeds" && printf "$address/files/%s\n" *)
printf '\n$ tidel subscribe %s/files/*\n' "$address"
"$tidel" subscribe "${difficult[@]}"

say 'This archive was temporary. Your first "tidel subscribe" creates your own; "tidel --help" lists all commands.'
