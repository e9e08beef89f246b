#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
# usage: demo.sh TIDEL PROGRAM SOURCES
# Serves sample feeds on 127.0.0.1, subscribes to them in a temporary archive, and runs the program PROGRAM on it.
set -euo pipefail
tidel=$(realpath "$1")
program=$(realpath "$2")
sources=$(realpath "$3")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME=$work/data XDG_CONFIG_HOME=$work/config XDG_CACHE_HOME=$work/cache
mkdir "$work/feeds"
cp "$sources"/tools/tidel/demo/* "$work/feeds"

# The server ends when this script closes its input.
exec {server}> >(exec python3 "$sources/tests/server/feedserver.py" "$work/feeds" >"$work/requests")
until [ -s "$work/requests" ]; do sleep 0.05; done
address=http://127.0.0.1:$(head -n 1 "$work/requests")
sed -i "s|https://orbit.example.com/audio/|$address/bytes/40960/|" "$work/feeds/orbit.xml"
"$tidel" subscribe --quiet "$address"/files/{courier.xml,kitchen.atom,orbit.xml}
"$tidel" folder --quiet "Riverside Courier" News
"$program"
