#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
# usage: demo.sh TIDEL DATA
# Subscribes, lists and refreshes the sample feeds in a store that is thrown away.
set -euo pipefail
tidel=$(realpath "$1")
data=$(realpath "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME=$work/data
cp -r "$data/feeds" "$work"
cd "$work/feeds"

show() {
    printf '\n$ tidel %s\n' "${*@Q}"
    "$tidel" "$@"
}

show subscribe *
show channels
show messages "The Hillside Radio Hour"
show enclosures https://radio.example.org/episodes/5

printf '\nSome days later, one of the feeds has a new edition.\n'
cp "$data/feeds-later/hillside-radio.xml" .
show refresh
show refresh "The Hillside Radio Hour"
printf '\nThis store was a throwaway one. Your own is made by your first "tidel subscribe".\n'
