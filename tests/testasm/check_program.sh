#!/bin/sh
# check_program.sh PROGRAM VERSION DIR: assembles, takes apart and assembles again, and looks at exit statuses.
set -eu
program=$1
version=$2
dir=$3
mkdir -p "$dir"
cd "$dir"

printf 'stream inp\nfield name char\nvariable ^at\n' >names.txt
printf 'test t %%inp\nfocus f\nf: Adj p q\np: Ptr ^at\nq: Eq %%inp.name 97\nend\n' >good.mta
printf 'stream inp\nfield name nosuchtype\n' >badnames.txt
sed 's/\^at/^to/' good.mta >bad.mta

expect() {
    status=0
    "$program" "$@" >out.txt 2>errors.txt || status=$?
    [ "$status" -eq "$wanted" ] || { echo "$*: status $status"; cat errors.txt; exit 1; }
}

wanted=0
expect --version
[ "$(cat out.txt)" = "mlds-testasm $version" ]
expect good.mta --schema names.txt --output good.bin
expect good.bin --schema names.txt --disassemble
grep -q "'a'" out.txt # what a number is compared with gives it its name
cp out.txt again.mta
expect again.mta --schema names.txt --output again.bin
cmp good.bin again.bin
wanted=1
expect bad.mta --schema names.txt --check
grep -q '^bad.mta:4:8: error: expected a mark variable that is declared, found ^to$' errors.txt
expect good.mta --disassemble
expect good.mta --schema badnames.txt --check
wanted=2
expect good.mta
expect missing.mta --list
expect . --list
expect good.mta --schema names.txt --output missing/good.bin

# An output that takes nothing, full or closed, is said and is a failure.
for what in "good.mta --schema names.txt --list" "good.bin --disassemble" --opcodes --help --version
do
    for output in '>/dev/full' '>&-'; do
        status=0
        eval "\"\$program\" $what 2>errors.txt $output" || status=$?
        [ "$status" -eq 2 ] || { echo "$what $output: status $status"; exit 1; }
        grep -q '^mlds-testasm: cannot write to standard output: .' errors.txt
    done
done
