#!/usr/bin/env bash
# check_install.sh [--host-logger] [--testasm] [--rules] [--tools] BUILD_DIR WORK_DIR
#
# Installs a built tree into a prefix of its own, moves the prefix somewhere else, and builds and
# runs programs there: with find_package, and with pkg-config. With --host-logger the programs bring
# the logger, as they must for a library built with MLDS_OKULOG=OFF. With --testasm one of them
# assembles a rule test, with --rules others run a rule file and print tiers; otherwise asking for
# those components has to be refused. With --tools the program mlds finds the languages that were
# installed with it.
set -euo pipefail

has_logger=OFF
assembles=OFF
rules=OFF
tools=OFF
while [[ "${1:-}" == --* ]]; do
    case "$1" in
        --host-logger) has_logger=ON ;;
        --testasm) assembles=ON ;;
        --rules) rules=ON ;;
        --tools) tools=ON ;;
        *) echo "unknown option $1" >&2; exit 2 ;;
    esac
    shift
done
build=$1
work=$2
consumer=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/consumer
cxx=${CXX:-c++}

sources=("$consumer/main.cpp")
[ "$has_logger" = OFF ] || sources+=("$consumer/host_logger.cpp")

expect_output() {
    local output
    output=$("$@")
    printf '%s\n' "$output"
    grep -qxF '||h|o|l|a||' <<<"$output" || { echo "unexpected output of $1" >&2; return 1; }
    if [ "$has_logger" = ON ]; then
        grep -q '^host logger: error 1750: ' <<<"$output" ||
            { echo "the host's logger was not called by $1" >&2; return 1; }
    fi
}

rm -rf "$work"
mkdir -p "$work"
work=$(cd "$work" && pwd)

echo "== install, and move the installation"
cmake --install "$build" --prefix "$work/first" >"$work/install.log"
mv "$work/first" "$work/prefix"
pc=$(find "$work/prefix" -name mlds.pc)
[ -n "$pc" ] || { echo "no pkg-config file was installed" >&2; exit 1; }

echo "== a program that uses find_package"
configure_consumer() {
    cmake -S "$consumer" -B "$work/consumer" -DCMAKE_CXX_COMPILER="$cxx" \
        -DCMAKE_PREFIX_PATH="$work/prefix" -DCONSUMER_HAS_LOGGER="$has_logger" \
        -DCONSUMER_ASSEMBLES="$1" -DCONSUMER_RUNS_RULES="$2" >"$work/configure.log" 2>&1
}
# expect_refusal COMPONENT ASSEMBLES RUNS_RULES
expect_refusal() {
    if configure_consumer "$2" "$3"; then
        echo "the component $1, which is not there, was found" >&2
        exit 1
    fi
    # The reason may be broken into several lines.
    tr -s ' \n' ' ' <"$work/configure.log" |
        grep -qF "mlds was installed without its component '$1'" ||
        { cat "$work/configure.log" >&2; exit 1; }
}
[ "$assembles" = ON ] || expect_refusal testasm ON OFF
[ "$rules" = ON ] || expect_refusal rules OFF ON
configure_consumer "$assembles" "$rules" || { cat "$work/configure.log" >&2; exit 1; }
cmake --build "$work/consumer" >"$work/build.log" || { cat "$work/build.log" >&2; exit 1; }
expect_output "$work/consumer/consumer"
[ "$assembles" = OFF ] || "$work/consumer/assembling" | grep -x 'vowels: o a'
if [ "$rules" = ON ]; then
    "$work/consumer/ruling" "$consumer/tiny.mlr" | grep -x 'phones: o l a  s i e t e'
    "$work/consumer/printing" | grep -xE 'phone +[|]o[|]l[|]a[|]'
fi

if [ "$tools" = ON ]; then
    echo "== the program mlds, from another folder"
    (cd / && env -u MLDS_LANGUAGES "$work/prefix/bin/mlds" run es --format phones --text 'hola, México') |
        grep -x "'o l a  m 'e x i k o"
fi

echo "== a program that uses pkg-config, in C++11"
export PKG_CONFIG_PATH
PKG_CONFIG_PATH=$(dirname "$pc")
read -ra flags <<<"$(pkg-config --cflags --libs mlds)"
libdir=$(pkg-config --variable=libdir mlds)
"$cxx" -std=c++11 -Wall -Wextra -Wpedantic -Werror "${sources[@]}" "${flags[@]}" \
    -Wl,-rpath,"$libdir" -o "$work/consumer_pc"
expect_output "$work/consumer_pc"
"$work/consumer_pc" | grep -qxF "mlds $(pkg-config --modversion mlds)" ||
    { echo "header and package differ in their version" >&2; exit 1; }
