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

# Checks the lines of a drawing against the grid: one where a word begins or ends, the axis, and a tick
# every 100 ms with a number every 500.
check_drawing() {
    local drawing=$1 grid=$2 milliseconds=$3 words
    words=$(awk '/^        name = /{ on = $3 == "\"word\"" } on && /intervals: size = / { print $4 }' "$grid")
    [ "$(grep -c 'stroke="#bbb"' "$drawing")" = $((words + 1)) ] || fail "$drawing: lines of words"
    [ "$(grep -c 'stroke="#333"' "$drawing")" = $((milliseconds / 100 + 2)) ] || fail "$drawing: ticks"
    [ "$(grep -c 'font-size="11".* s</text>' "$drawing")" = $((milliseconds / 500 + 1)) ] || fail "$drawing: numbers"
    # A lane for every tier, and a box for every label.
    [ "$(grep -c 'fill="#555"' "$drawing")" = 6 ] || fail "$drawing: names of tiers"
    [ "$(grep -c '^<rect x=' "$drawing")" = "$(grep -c '^ *text = ' "$grid")" ] || fail "$drawing: labels"
    # Lines of words are upright, and stand where labels begin or end.
    awk -F'"' -v tolerance=0.11 '
        /^<rect x=/ { edges[++n] = $2; edges[++n] = $2 + $6 }
        /stroke="#bbb"/ { guides[++m] = $2; if ($2 != $6 || $4 >= $8) exit 1 }
        END {
            for (i = 1; i <= m; ++i) {
                found = 0
                for (k = 1; k <= n; ++k) {
                    d = guides[i] - edges[k]
                    if (d < tolerance && d > -tolerance) found = 1
                }
                if (!found) exit 1
            }
        }' "$drawing" || fail "$drawing: a line of words stands elsewhere"
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
        check_drawing "$drawing" "$grid" "$milliseconds"
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
# One name, twice.
mkdir -p "$folder/twice"
rm -f "$folder/twice"/*
"$transcribe" --textgrid "$folder/twice" "$sample" "$sample" "$sample" >/dev/null
grid=$(basename "$sample" .txt)-1.TextGrid
for again in 2 3; do
    cmp "$folder/twice/$grid" "$folder/twice/${grid%.TextGrid}-$again.TextGrid"
done
mkdir -p "$folder/blocked/$grid"
if "$transcribe" --textgrid "$folder/blocked" "$sample" >/dev/null 2>"$folder/messages"; then
    fail "a grid that cannot be written goes unnoticed"
fi
grep -q "$grid: " "$folder/messages" || fail "it is not said which file cannot be written"
