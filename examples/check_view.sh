#!/bin/sh
# check_view.sh TRANSCRIBE VIEWER SAMPLE DIR: a transcription that is watched is the same as one that
# is not, step by step or at once, and the viewer ends up with the same streams.
set -eu
transcribe=$1
viewer=$2
sample=$3
dir=$4
rm -rf "$dir"
mkdir -p "$dir"
cd "$dir"

transcribe() {
    timeout 60 "$transcribe" "$@"
}

fail() {
    echo "$*"
    exit 1
}

transcribe "$sample" >expected.txt
printf 'host = 127.0.0.1\nport = 1\n' >plexaview.cfg # where nobody listens
status=0
transcribe --view "$sample" >/dev/null 2>errors.txt || status=$?
[ $status -eq 1 ] || fail "without a viewer: status $status"
grep -q 'no viewer answers' errors.txt || fail "without a viewer: $(cat errors.txt)"

"$viewer" --port 0 --no-web --log </dev/null >log.txt &
viewer_id=$!
trap 'kill $viewer_id' EXIT
for _ in $(seq 200); do
    ! grep -q '^engines: ' log.txt || break
    sleep 0.05
done
sed -n 's/^engines: \(.*\):\(.*\)/host = \1\nport = \2/p' log.txt >plexaview.cfg

transcribe --view "$sample" >viewed.txt
cmp expected.txt viewed.txt
# Three steps, and then without.
printf '\n\nxyz\nc\n' | transcribe --step "$sample" >stepped.txt 2>steps.txt
cmp expected.txt stepped.txt
[ "$(grep -c 'Enter: next' steps.txt)" -eq 4 ] || fail "steps: $(cat steps.txt)"

for _ in 1 2 3 4 5 6 7 8 9 10; do
    [ "$(grep -c 'gone: it said goodbye' log.txt)" -lt 2 ] || break
    sleep 0.1
done
[ "$(grep -c 'gone: it said goodbye' log.txt)" -eq 2 ] || fail "two engines came and went"
# The last lines are the streams that the last line of the text left, or their end.
names=$(tail -n 7 log.txt | sed -n 's/^phone *//p' | tr -d '| ')
[ -n "$names" ] || fail "no phones in the viewer"
expected=$(sed -n 's/^phone *//p' expected.txt | tail -n 1 | tr -d "|' ")
[ -z "${expected##*"$names"}" ] || fail "the viewer shows $names, not $expected"
