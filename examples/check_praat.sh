#!/usr/bin/env bash
# check_praat.sh TRANSCRIBE SAMPLE FOLDER
#
# Has Praat read a TextGrid, where it is installed: names and numbers of the tiers, and what one of
# them has at a time. Ends with 77, for "skipped", where it is not.
set -euo pipefail

transcribe=$1
sample=$2
folder=$3

if ! command -v praat >/dev/null; then
    echo "skipped: praat is not installed"
    exit 77
fi
mkdir -p "$folder"
"$transcribe" --textgrid "$folder" "$sample" >/dev/null
cat >"$folder/read.praat" <<'SCRIPT'
form Grid
    sentence path
endform
Read from file: path$
tiers = Get number of tiers
writeInfoLine: "tiers ", tiers
for tier to tiers
    name$ = Get tier name: tier
    intervals = Get number of intervals: tier
    label$ = Get label of interval: tier, 1
    finish = Get end time of interval: tier, 1
    appendInfoLine: name$, " ", intervals, " [", label$, "] ", fixed$(finish, 3)
endfor
SCRIPT
praat --run "$folder/read.praat" "$folder/saludo-1.TextGrid" >"$folder/read.txt"
diff -u - "$folder/read.txt" <<'EXPECTED'
tiers 6
RawInput 14 [Ho] 0.104
inp 14 [ho] 0.104
word 5 [hola] 0.314
phone 14 ['o] 0.104
syl 8 ['o] 0.104
time 14 [104] 0.104
EXPECTED
