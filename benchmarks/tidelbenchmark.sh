#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
# usage: tidelbenchmark.sh TIDEL PARSER INSERTER
# Measures the CPU seconds of subscribing to and refreshing 200 feeds of 50 items. For comparison, measures reading the
# feeds only, reading one feed of 15 MB, and storing the same amount with Tracker only.
set -euo pipefail
tidel=$1 parser=$2 inserter=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME=$work/data
# tidel sets this too, so all programs run under the same conditions.
export TZ=${TZ-:/etc/localtime}

generate() { python3 "$(dirname "$0")/../tests/data/generate-feeds.py" --size 1024 "$@"; }
generate --feeds 200 --items 50 "$work/feeds"
generate --feeds 1 --items 9100 "$work/large"

cpu_of() {
    local TIMEFORMAT='%U %S'
    local seconds
    seconds=$({ time "${@:2}" >"$work/output"; } 2>&1)
    awk -v what="$1" '{ printf "%-20s %6.2f s\n", what, $1 + $2 }' <<<"$seconds"
}

"$parser" "$work"/feeds/*
"$parser" "$work"/large/*
XDG_DATA_HOME=$work/texts "$inserter" "$work/tracker"
cpu_of "tidel subscribe" "$tidel" subscribe "$work"/feeds/*
cpu_of "tidel refresh" "$tidel" refresh
