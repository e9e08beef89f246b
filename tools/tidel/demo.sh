#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
# usage: demo.sh TIDEL TESTS
# Serves the sample feeds on 127.0.0.1 and runs the commands of tidel on a temporary store.
set -euo pipefail
tidel=$(realpath "$1")
tests=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME=$work/data
cp -r "$tests/data/feeds" "$work"

show() {
    printf '\n$ tidel %s\n' "${*@Q}"
    "$tidel" "$@"
}

# Shows the answers of the server since the last call.
show_answers() {
    printf '\nThe server answered:\n'
    tail -n "+$((seen + 1))" "$work/requests" | awk '{ print $3 }' | sort | uniq -c
    seen=$(wc -l <"$work/requests")
}

# The server ends when this script closes its input.
exec {server}> >(exec python3 "$tests/server/feedserver.py" "$work/feeds" >"$work/requests")
until [ -s "$work/requests" ]; do sleep 0.05; done
seen=1
address=http://127.0.0.1:$(head -n 1 "$work/requests")
# The server has files for this sample only.
sed -i "s|https://media.example.org/hillside/|$address/bytes/40960/|" "$work"/feeds/hillside-radio.xml

mapfile -t feeds < <(cd "$work/feeds" && printf "$address/files/%s\n" *)
show subscribe "${feeds[@]}"
show channels
show messages "The Hillside Radio Hour"
show enclosures https://radio.example.org/episodes/5
show download https://radio.example.org/episodes/5 --into "$work/downloads"
show_answers

printf '\nSome days later, one feed has new messages.\n'
cp "$tests/data/feeds-later/hillside-radio.xml" "$work/feeds"
show refresh
show_answers
printf '\nNo feed has changed, so the server does not send the documents again.\n'
show refresh
show_answers

printf '\nDelete all messages except the favorite and the newest two of each channel.\n'
show favorite https://radio.example.org/episodes/1
show prune --include-unread --keep 2 --dry-run "The Hillside Radio Hour"
show prune --include-unread --keep 2
show refresh
show clean

printf '\nUnsubscribe from all channels.\n'
for feed in "${feeds[@]}"; do
    show unsubscribe "$feed"
done
show clean
show channels

printf '\nThis store was temporary. Your first "tidel subscribe" creates your own store.\n'
