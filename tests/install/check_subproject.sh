#!/usr/bin/env bash
# check_subproject.sh SOURCE_DIR WORK_DIR
#
# Builds a host that has the library in its own tree with add_subdirectory: the library is static or
# shared as is the host's way, leaves no option of its own in the host for that, and installs
# nothing.
set -euo pipefail

source=$1
work=$2
host=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/subproject
cxx=${CXX:-c++}

fail() {
    echo "$*" >&2
    exit 1
}

# configure TREE OPTION...
configure() {
    local tree=$1
    shift
    cmake -S "$host" -B "$tree" -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_BUILD_TYPE=Release \
        -DMLDS_SOURCE="$source" "$@" \
        >"$work/configure.log" 2>&1 || { cat "$work/configure.log" >&2; exit 1; }
}

rm -rf "$work"
mkdir -p "$work"
work=$(cd "$work" && pwd)

configure "$work/static"
grep -qx -- '-- mlds is a STATIC_LIBRARY' "$work/configure.log" || fail "not static by default"
! grep '^BUILD_SHARED_LIBS' "$work/static/CMakeCache.txt" || fail "an option of the host is taken"
cmake --build "$work/static" --parallel 2 >"$work/build.log" 2>&1 ||
    { cat "$work/build.log" >&2; exit 1; }
"$work/static/consumer" 2>/dev/null | grep -x '||h|o|l|a||' || fail "the host does not work"
"$work/static/assembling" | grep -x 'vowels: o a' || fail "the assembling host does not work"

cmake --install "$work/static" --prefix "$work/prefix" >"$work/install.log"
installed=$(cd "$work/prefix" && find . -type f)
[ "$installed" = ./bin/consumer ] || fail "installed besides the host: $installed"

configure "$work/shared" -DBUILD_SHARED_LIBS=ON
grep -qx -- '-- mlds is a SHARED_LIBRARY' "$work/configure.log" || fail "not shared for a host that is"
