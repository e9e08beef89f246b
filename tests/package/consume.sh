#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
# usage: consume.sh cmake|pkgconfig BUILD CMAKE CXX MOC
# Installs into a temporary prefix, and builds and runs programs against it, as other people do.
set -euo pipefail
way=$1 build=$2 cmake=$3 cxx=$4 moc=$5
here=$(cd "$(dirname "$0")" && pwd)
examples=$here/../../examples
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

fail() {
    echo "$*"
    exit 1
}

expect() {
    [ "$1" = "$2" ] || fail "expected \"$2\", got \"$1\""
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

# A plug-in of another project takes the place of ours until both are tried together.
plugins=$libraries/tidel/plugins
mkdir -p "$work/ours" "$plugins"
find "$plugins" -name '*.so' -exec mv {} "$work/ours" \;
export PKG_CONFIG_PATH=$libraries/pkgconfig

# build_cmake FOLDER [ARGUMENT...] builds the project in FOLDER in a folder of the same name below $work.
build_cmake() {
    local name
    name=$(basename "$1")
    "$cmake" -S "$1" -B "$work/$name" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$cxx" \
        -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror" "${@:2}" >/dev/null
    "$cmake" --build "$work/$name" >/dev/null
}

# build_pkgconfig PACKAGE FOLDER ARGUMENT... compiles what is in FOLDER in a folder of the same name below $work.
build_pkgconfig() {
    local package=$1 folder=$2 flags
    shift 2
    read -r -a flags <<<"$(pkg-config --cflags --libs "$package")"
    "$cxx" -std=c++17 -I"$work/$(basename "$folder")" "$folder"/*.cpp "$@" "${flags[@]}"
}

qt=$(readelf -d "$library" | grep -o -m 1 'Qt[56]')
qml=$libraries/${qt,,}/qml
case $way in
cmake)
    build_cmake "$here/host"
    build_cmake "$examples/minimal-host"
    build_cmake "$examples/plugin"
    if [ -d "$qml" ]; then
        build_cmake "$examples/qml-list"
        build_cmake "$here/windowwatch" -DQT="$qt"
    fi
    install_plugin() { "$cmake" --install "$work/plugin" >/dev/null; }
    ;;
pkgconfig)
    mkdir "$work/host" "$work/minimal-host" "$work/plugin"
    build_pkgconfig TidelCore "$here/host" -o "$work/host/host"
    build_pkgconfig TidelReader "$examples/minimal-host" -o "$work/minimal-host/minimal-host"
    "$moc" -I"$prefix/include/TidelCore" "$examples/plugin/notesplugin.cpp" -o "$work/plugin/notesplugin.moc"
    build_pkgconfig TidelReader "$examples/plugin" -shared -fvisibility=hidden -o "$work/plugin/libnotes.so"
    install_plugin() { cp "$work/plugin/libnotes.so" "$(pkg-config --variable=plugindir TidelReader)"; }
    ;;
esac
reader() { LD_LIBRARY_PATH=$libraries "$work/minimal-host/minimal-host" "$@"; }

XDG_DATA_HOME=$work/core LD_LIBRARY_PATH=$libraries "$work/host/host"

export XDG_DATA_HOME=$work/notes
expect "$(reader 2>&1)" "minimal-host: plug-in: no download plug-in in $plugins"
install_plugin
[ -f "$plugins/libnotes.so" ] || fail "the package does not tell the folder of the plug-ins"
if nm -D --defined-only "$plugins/libnotes.so" | grep ' T .*Notes'; then
    fail "the plug-in exports functions of its own"
fi
printf '2026-03-01 Dug\nno note\n2026-04-20 Sowed the beans\n' >"$work/garden.notes"
address=notes://$work/garden.notes
expect "$(reader "$address" && echo "exit 0")" $'garden\n  Sowed the beans\n  Dug\nexit 0'
expect "$(reader "$address" 2>&1 && echo "exit 0")" \
    "minimal-host: $address: is subscribed already"$'\ngarden\n  Sowed the beans\n  Dug'
echo '2026-05-02 Weeded' >>"$work/garden.notes"
expect "$(reader)" $'garden\n  Weeded\n  Sowed the beans\n  Dug'
expect "$(reader "notes://$work/none" 2>&1 >/dev/null)" "minimal-host: notes://$work/none: no such file"

# A store that cannot be opened, and one that is damaged.
export XDG_DATA_HOME=/dev/null
reader 2>"$work/errors" && fail "a store below /dev/null was opened"
grep -q '^minimal-host: store: could not open the store: ' "$work/errors" || fail "$(cat "$work/errors")"
export XDG_DATA_HOME=$work/damaged
mkdir -p "$XDG_DATA_HOME/tidel/store"
echo "this is not a database" >"$XDG_DATA_HOME/tidel/store/meta.db"
reader 2>"$work/errors" && fail "a damaged store was opened"
grep -q '^minimal-host: store: could not open the store: ' "$work/errors" || fail "$(cat "$work/errors")"

[ -n "$(ls "$work/ours")" ] || exit 0
mv "$work"/ours/* "$plugins"
export XDG_DATA_HOME=$work/both
feed=$here/../data/feeds/town-news.xml
expect "$(reader "$feed" "$address" | grep -v '^ ')" $'garden\nTown News'
expect "$(reader "$work/garden.notes" 2>&1 | grep -c 'not a feed')" 1


# The installed program needs no help to find libraries and plug-ins.
tidel=$prefix/bin/tidel
expect "$("$tidel" plugins | cut -d ' ' -f 1)" $'notes\nsyndication'
# Pruned notes do not come back, although the file still has them.
"$tidel" prune garden --keep 1 --include-unread >/dev/null
echo '2026-06-09 Watered' >>"$work/garden.notes"
"$tidel" refresh garden >/dev/null
expect "$(reader | sed '/^Town News/,$d')" $'garden\n  Watered\n  Weeded'

if [ "$way" = cmake ] && [ -d "$qml" ]; then
    export XDG_DATA_HOME=$work/qml
    "$tidel" subscribe "$here/../data/feeds/county-news.xml" --quiet
    "$tidel" folder "County News" County --quiet
    # The window has the rows of both channels. A click marks a message, as the program beside it sees.
    texts="file://$work/none: no such file"$'\nAddress of a feed\nSubscribe\nRefresh\nAll messages\n2\nUnread\n2\nFavorites\n▾\nCounty\n1\nCounty News\n1\nTown News\n1'
    texts+=$'\n★\nThe bridge is open\nCounty News, Town News\n4 Nov 2026\n☆\nA new county bus\nCounty News\n3 Nov 2026'
    texts+=$'\n☆\nThe pool is closed\nTown News\n2 Nov 2026'
    mkdir -m 700 "$work/runtime"
    XDG_RUNTIME_DIR=$work/runtime QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software QT_PLUGIN_PATH=$work/windowwatch \
        QT_QPA_GENERIC_PLUGINS=windowwatch WINDOWWATCH_TEXTS=$texts "$work/qml-list/qml-list" "$feed" "$work/none" 2>"$work/errors" ||
        fail "$(cat "$work/errors")"
    [ ! -s "$work/errors" ] || fail "$(cat "$work/errors")"
    expect "$("$tidel" messages --favorites --json | grep -c '"title"')" 1
fi
# Programs find the module where the packages say.
if [ -d "$qml" ]; then
    expect "$(realpath "$(pkg-config --variable=qmldir TidelReader)")" "$(realpath "$qml")"
fi

export XDG_DATA_HOME=$work/empty
expect "$("$tidel" channels 2>&1)" 'There are no channels; "tidel subscribe FILE|URL" adds one.'
# The service runs the installed program, which says nothing when nothing is wrong.
units=$prefix/lib/systemd/user
service=$(sed -n 's/^ExecStart=//p' "$units/tidel-refresh.service")
expect "$service" "$prefix/bin/tidel refresh --quiet"
expect "$($service 2>&1 && echo "exit 0")" "exit 0"
[ -s "$units/tidel-refresh.timer" ] || fail "no timer in $units"
