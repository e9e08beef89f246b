#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
# usage: partsbenchmark.sh PARSER INSERTER
# Measures two parts of subscribing to 200 feeds of 50 items by themselves: reading the feeds, and storing the same amount
# with Tracker only. Also measures reading one feed of 15 MB.
set -euo pipefail
parser=$1 inserter=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# tidel sets this too, so all programs run under the same conditions.
export TZ=${TZ-:/etc/localtime}

generate() { python3 "$(dirname "$0")/../tests/data/generate-feeds.py" --size 1024 "$@"; }
generate --feeds 200 --items 50 "$work/feeds"
generate --feeds 1 --items 9100 "$work/large"

"$parser" "$work"/feeds/*
"$parser" "$work"/large/*
XDG_DATA_HOME=$work/texts "$inserter" "$work/tracker"
