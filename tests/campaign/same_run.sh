#!/bin/sh
# same_run.sh CAMPAIGN: two runs of one seed must be the same to the byte and to the
# microsecond, and those of another seed different.
set -eu
traces=$(mktemp -d)
trap 'rm -rf "$traces"' EXIT
for run in 1 2 other; do
    case $run in other) seed=8 ;; *) seed=7 ;; esac
    "$1" --seed $seed --exchanges 3000 --trace "$traces/$run" >/dev/null
done
cmp "$traces/1" "$traces/2"
! cmp -s "$traces/1" "$traces/other"
test "$(wc -l <"$traces/1")" -gt 6000
