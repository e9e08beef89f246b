#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
# usage: consume.sh cmake|pkgconfig BUILD CMAKE CXX MOC
# Installs into a temporary prefix, and builds and runs programs against it, as other people do.
set -euo pipefail
way=$1 build=$2 cmake=$3 cxx=$4 moc=$5
here=$(cd "$(dirname "$0")" && pwd)
consumer=$here/consumer
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

fail() {
    echo "$*"
    exit 1
}

"$cmake" --install "$build" --prefix "$prefix" >/dev/null
library=$(find "$prefix" -name libTidelCore.so.1)
[ -n "$library" ] || fail "no libTidelCore.so.1 below $prefix"
libraries=$(dirname "$library")
# grep reads to the end: with pipefail, closing the pipe early would count as a failure.
readelf -d "$library" | grep 'SONAME.*\[libTidelCore\.so\.1\]' >/dev/null || fail "wrong soname of libTidelCore"
readelf -d "$library" | grep 'NEEDED.*\[libQt[56]Network' >/dev/null || fail "QtNetwork is not linked"
readelf -d "$libraries/libTidelReader.so.0" | grep 'SONAME.*\[libTidelReader\.so\.0\]' >/dev/null ||
    fail "wrong soname of libTidelReader"
if find "$prefix" -name '*_p.h' | grep .; then
    fail "private headers are installed"
fi
if grep -rlE 'tracker-sparql|tinysparql|glib' "$prefix/include"; then
    fail "an installed header names Tracker's library or GLib"
fi

case $way in
cmake)
    "$cmake" -S "$consumer" -B "$work/build" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$cxx" >/dev/null
    "$cmake" --build "$work/build" >/dev/null
    ;;
pkgconfig)
    export PKG_CONFIG_PATH=$libraries/pkgconfig
    mkdir "$work/build"
    read -r -a flags <<<"$(pkg-config --cflags --libs TidelCore)"
    "$cxx" -std=c++17 "$consumer/main.cpp" -o "$work/build/host" "${flags[@]}"
    read -r -a flags <<<"$(pkg-config --cflags --libs TidelReader)"
    "$cxx" -std=c++17 "$consumer/reader.cpp" -o "$work/build/reader" "${flags[@]}"
    "$moc" "$consumer/linesplugin.cpp" -I"$prefix/include/TidelCore" -o "$work/build/linesplugin.moc"
    "$cxx" -std=c++17 -shared "$consumer/linesplugin.cpp" -I"$work/build" -o "$work/build/liblines.so" "${flags[@]}"
    ;;
esac
export LD_LIBRARY_PATH=$libraries
XDG_DATA_HOME=$work/core "$work/build/host"

expect() {
    [ "$1" = "$2" ] || fail "expected \"$2\", got \"$1\""
}

# A plug-in of another project takes the place of ours.
plugins=$libraries/tidel/plugins
mkdir -p "$work/ours" "$plugins"
find "$plugins" -name '*.so' -exec mv {} "$work/ours" \;
export XDG_DATA_HOME=$work/lines
expect "$("$work/build/reader" /none 2>&1)" "reader: plug-in: no download plug-in in $plugins"
case $way in
cmake) "$cmake" --install "$work/build" >/dev/null ;;
pkgconfig) cp "$work/build/liblines.so" "$(pkg-config --variable=plugindir TidelReader)" ;;
esac
[ -f "$plugins/liblines.so" ] || fail "the package does not tell the folder of the plug-ins"
printf 'https://example.org/1 First\nhttps://example.org/2 Second\n' >"$work/news"
expect "$("$work/build/reader" "$work/news")" $'news\n  Second\n  First'
expect "$("$work/build/reader" "$work/news" 2>/dev/null && echo "exit 0")" $'news\n  Second\n  First'
rm "$plugins/liblines.so"

# A store that cannot be opened, and one that is damaged.
export XDG_DATA_HOME=/dev/null
"$work/build/reader" "$work/news" 2>"$work/errors" && fail "a store below /dev/null was opened"
grep -q '^reader: store: could not open the store: ' "$work/errors" || fail "$(cat "$work/errors")"
export XDG_DATA_HOME=$work/damaged
mkdir -p "$XDG_DATA_HOME/tidel/store"
echo "this is not a database" >"$XDG_DATA_HOME/tidel/store/meta.db"
"$work/build/reader" "$work/news" 2>"$work/errors" && fail "a damaged store was opened"
grep -q '^reader: store: could not open the store: ' "$work/errors" || fail "$(cat "$work/errors")"

unset LD_LIBRARY_PATH
if [ -n "$(ls "$work/ours")" ]; then
    mv "$work"/ours/* "$plugins"
    export XDG_DATA_HOME=$work/reader
    expect "$(LD_LIBRARY_PATH=$libraries "$work/build/reader" "$here/../data/feeds/town-news.xml" | head -n 1)" "Town News"
    # The program needs no help to find libraries and plug-in.
    expect "$("$prefix/bin/tidel" channels | cut -d ' ' -f 3,4)" "Town News"
fi
if [ -x "$prefix/bin/tidel" ]; then
    export XDG_DATA_HOME=$work/empty
    expect "$("$prefix/bin/tidel" channels 2>&1)" 'There are no channels; "tidel subscribe FILE|URL" adds one.'
    # The service runs the installed program, which says nothing when nothing is wrong.
    units=$prefix/lib/systemd/user
    service=$(sed -n 's/^ExecStart=//p' "$units/tidel-refresh.service")
    expect "$service" "$prefix/bin/tidel refresh --quiet"
    expect "$($service 2>&1 && echo "exit 0")" "exit 0"
    [ -s "$units/tidel-refresh.timer" ] || fail "no timer in $units"
fi
