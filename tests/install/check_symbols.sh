#!/usr/bin/env bash
# check_symbols.sh [--update] LIBRARY
#
# Compares what a built shared library exports with exported_symbols.txt beside this script, or
# writes that list anew. A symbol that is missing breaks hosts that are already linked; one that is
# new was either meant or has escaped.
set -euo pipefail
export LC_ALL=C

list=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/exported_symbols.txt
update=no
if [ "${1:-}" = --update ]; then
    update=yes
    shift
fi
library=${1:?usage: check_symbols.sh [--update] LIBRARY}

# Address, type and name; constructors and destructors have several symbols of one name. Virtual
# tables of the interface classes are left out: whether the compiler needs them depends on how far
# it optimises, and every program that needs one has its own. So are functions that the headers define
# (weak, W): whether a compiler emits them is its own affair.
exported=$(nm -D --defined-only --demangle "$library" |
    sed -E '/^[0-9a-f]* +W /d; s/^[0-9a-f]* +[A-Za-z] //; /^vtable for .*Base$/d' | sort -u)
[ -n "$exported" ] || { echo "$library exports nothing" >&2; exit 1; }

if [ "$update" = yes ]; then
    printf '%s\n' "$exported" >"$list"
    echo "wrote $(wc -l <"$list") symbols to $list"
    exit 0
fi
if ! diff -u --label expected --label exported "$list" <(printf '%s\n' "$exported"); then
    echo "What the library exports has changed: lines with '-' are gone, lines with '+' are new." >&2
    echo "If that is meant: ${BASH_SOURCE[0]} --update $library" >&2
    exit 1
fi
echo "exports the $(wc -l <"$list") symbols of the list"
