#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
# usage: consume.sh cmake|pkgconfig BUILD CMAKE CXX
set -euo pipefail
way=$1 build=$2 cmake=$3 cxx=$4
consumer=$(dirname "$0")/consumer
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

"$cmake" --install "$build" --prefix "$prefix" >/dev/null
library=$(find "$prefix" -name libTidelCore.so.1)
[ -n "$library" ] || { echo "no libTidelCore.so.1 below $prefix"; exit 1; }
# grep reads to the end: with pipefail, closing the pipe early would count as a failure.
readelf -d "$library" | grep 'SONAME.*\[libTidelCore\.so\.1\]' >/dev/null || { echo "wrong soname"; exit 1; }
readelf -d "$library" | grep 'NEEDED.*\[libQt[56]Network' >/dev/null || { echo "QtNetwork is not linked"; exit 1; }
if find "$prefix" -name '*_p.h' | grep .; then
    echo "private headers are installed"
    exit 1
fi
if grep -rlE 'tracker-sparql|tinysparql|glib' "$prefix/include"; then
    echo "an installed header names Tracker's library or GLib"
    exit 1
fi

case $way in
cmake)
    "$cmake" -S "$consumer" -B "$work/build" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$cxx" >/dev/null
    "$cmake" --build "$work/build" >/dev/null
    host=$work/build/host
    ;;
pkgconfig)
    export PKG_CONFIG_PATH
    PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name TidelCore.pc)")
    read -r -a flags <<<"$(pkg-config --cflags --libs TidelCore)"
    host=$work/host
    "$cxx" -std=c++17 "$consumer/main.cpp" -o "$host" "${flags[@]}"
    ;;
esac
XDG_DATA_HOME=$work/data LD_LIBRARY_PATH=$(dirname "$library") "$host"

# The reader, where there is one, needs no help to find libraries and plug-in.
if [ -x "$prefix/bin/tidel" ]; then
    export XDG_DATA_HOME=$work/reader
    [ "$("$prefix/bin/tidel" channels 2>&1)" = 'No channels yet; "tidel subscribe FILE|URL" adds one.' ]
fi
if [ -n "$(find "$prefix" -path '*/tidel/plugins/*.so')" ]; then
    "$prefix/bin/tidel" subscribe "$(dirname "$0")/../data/feeds/town-news.xml"
fi
