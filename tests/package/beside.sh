#!/usr/bin/env bash
# SPDX-License-Identifier: LGPL-2.1-or-later
# usage: beside.sh CMAKE CXX BUILD-FOR-QT5 BUILD-FOR-QT6
# Installs both builds below one prefix, and builds and runs programs with each. Returns 77 if one is not built.
set -euo pipefail
cmake=$1 cxx=$2 build5=$3 build6=$4
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix5=$work/prefix
prefix6=$prefix5/lib/tidel-qt6

fail() {
    echo "$*"
    exit 1
}

expect() {
    [ "$1" = "$2" ] || fail "expected \"$2\", got \"$1\""
}

if ! { "$cmake" --install "$build5" --prefix "$prefix5" &&
    "$cmake" --install "$build6" --prefix "$prefix6" --component libraries; } >"$work/log" 2>&1; then
    tail -n 3 "$work/log"
    exit 77
fi
expect "$(cd "$prefix6" && echo *)" "include lib"
diff -r "$prefix5/include" "$prefix6/include" || fail "the headers differ"

# configure FOLDER BUILD PREFIXES [ARGUMENT...]
configure() { "$cmake" -S "$1" -B "$2" -DCMAKE_PREFIX_PATH="$3" -DCMAKE_CXX_COMPILER="$cxx" "${@:4}"; }

# check QT PREFIX: programs that are built with the packages in PREFIX get the libraries for QT, and all run.
check() {
    local qt=$1 prefix=$2 build=$work/qt$1 program flags
    configure "$here/../../examples/minimal-host" "$build" "$prefix" >/dev/null
    "$cmake" --build "$build" >/dev/null
    export PKG_CONFIG_PATH=$prefix/lib/pkgconfig
    read -r -a flags <<<"$(pkg-config --cflags --libs TidelCore)"
    "$cxx" -std=c++17 "$here/host/main.cpp" -o "$build/host" "${flags[@]}" "-Wl,-rpath,$prefix/lib"
    for program in "$build/minimal-host" "$build/host"; do
        expect "$(ldd "$program" | grep -o 'libQt[56]Core' | sort -u)" "libQt${qt}Core"
        expect "$(ldd "$program" | grep libTidel | grep -cv " $prefix/lib/" || true)" 0
    done
    expect "$(XDG_DATA_HOME=$work/host$qt "$build/host")" "stored and read back"
    expect "$(XDG_DATA_HOME=$work/reader$qt "$build/minimal-host" "$here/../data/feeds/town-news.xml" | sed '/^ /d')" \
        "Town News"
    expect "$(realpath "$(pkg-config --variable=plugindir TidelReader)")" "$(realpath "$prefix/lib/tidel/plugins")"
    expect "$(realpath "$(pkg-config --variable=qmldir TidelReader)")" "$(realpath "$prefix/lib/qt$qt/qml")"
    expect "$(ldd "$prefix/lib/qt$qt/qml/Tidel/libtidelqml.so" | grep -o 'libQt[56]Qml\.' | sort -u)" "libQt${qt}Qml."
}
check 5 "$prefix5"
check 6 "$prefix6"

mkdir "$work/project"
cat >"$work/project/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.20)
project(project LANGUAGES CXX)
find_package(Qt${QT} REQUIRED COMPONENTS Core)
find_package(TidelReader 0.1 REQUIRED)
END
# uses QT PREFIXES: returns 0 if a project that has found QT finds the packages in PREFIXES.
uses() {
    rm -rf "$work/project/build"
    configure "$work/project" "$work/project/build" "$2" -DQT="$1" >"$work/log" 2>&1
}
# is_refused QT PREFIX OTHER: such a project is told that the packages in PREFIX are for OTHER.
is_refused() {
    uses "$1" "$2" && fail "a project for Qt $1 was given $2"
    tr -s ' \n' ' ' <"$work/log" |
        grep -F "$2/lib/cmake/TidelCore is for Qt $3, but this project uses Qt $1. " >/dev/null || fail "$(cat "$work/log")"
}
uses 5 "$prefix5;$prefix6" || fail "$(cat "$work/log")"
uses 6 "$prefix6;$prefix5" || fail "$(cat "$work/log")"
is_refused 5 "$prefix6" 6
is_refused 6 "$prefix5" 5
