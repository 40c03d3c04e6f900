#!/usr/bin/env bash
# check_time.sh TRANSCRIBE SAMPLE FOLDER
#
# Transcribes a sample at several rates, with TextGrids and drawings in the folder, and checks that
# the tiers of a grid have no gaps and end together, that the durations of the phones fill them, and
# that the rate scales them.
set -euo pipefail

transcribe=$1
sample=$2
folder=$3

fail() {
    echo "check_time: $*" >&2
    exit 1
}

# Checks a grid, and prints the milliseconds that it lasts.
check_grid() {
    awk '
        function bad(what) { print FILENAME ":" FNR ": " what > "/dev/stderr"; failed = 1; exit 1 }
        function ms(seconds) { return int(seconds * 1000 + 0.5) }
        /^xmax = /           { end = $3 }
        /^size = /           { tiers = $3 }
        /^        class = "IntervalTier"/ { ++seen; last = 0; left = 0 }
        /^        name = /   { name = $3 }
        /^        xmax = /   { if ($3 != end) bad("the tiers do not end together") }
        /intervals: size = / { left = $4 }
        /^            xmin = / { if ($3 != last) bad("a gap"); from = $3 }
        /^            xmax = / { if ($3 <= from) bad("an empty interval"); last = $3 }
        /^            text = / {
            --left
            if (name == "\"time\"") {
                label = $3
                gsub(/"/, "", label)
                if (label != ms(last) - ms(from)) bad("not as long as it says")
            }
            if (left == 0 && last != end) bad("a tier ends early")
        }
        END {
            if (failed) exit 1
            if (seen != 6 || tiers != 6 || left != 0 || end <= 0) { bad("tiers or intervals are missing") }
            print ms(end)
        }' "$1"
}

declare -A total
for rate in 100 200 50; do
    mkdir -p "$folder/$rate"
    rm -f "$folder/$rate"/*
    "$transcribe" --rate $rate --textgrid "$folder/$rate" --svg "$folder/$rate" "$sample" >/dev/null
    for grid in "$folder/$rate"/*.TextGrid; do
        name=$(basename "$grid" .TextGrid)
        milliseconds=$(check_grid "$grid")
        total[$rate,$name]=$milliseconds
        drawing=$folder/$rate/$name.svg
        [ "$(grep -c '</svg>' "$drawing")" = 1 ] || fail "$drawing is no whole drawing"
        if command -v xmllint >/dev/null; then xmllint --noout "$drawing"; fi
        # The factor is a whole number of thousandths, and a sum is rounded up.
        normal=${total[100,$name]}
        wanted=$((normal * 100 / rate))
        difference=$((milliseconds - wanted))
        [ ${difference#-} -le $((normal / 1000 + 2)) ] ||
            fail "$name lasts $milliseconds ms at $rate per cent, and $normal at 100"
    done
done
[ ${#total[@]} -ge 3 ] || fail "no grids"

# What is said of wrong command lines, and of what cannot be written.
for arguments in "--rate 24" "--rate 401" "--rate fast" "--rate 50%" "--textgrid $folder/none"; do
    # shellcheck disable=SC2086
    if "$transcribe" $arguments "$sample" >/dev/null 2>"$folder/messages"; then
        fail "'$arguments' was taken"
    fi
    [ -s "$folder/messages" ] || fail "nothing is said of '$arguments'"
done
grid=$(basename "$sample" .txt)-1.TextGrid
mkdir -p "$folder/blocked/$grid"
if "$transcribe" --textgrid "$folder/blocked" "$sample" >/dev/null 2>"$folder/messages"; then
    fail "a grid that cannot be written goes unnoticed"
fi
grep -q "$grid: " "$folder/messages" || fail "it is not said which file cannot be written"
