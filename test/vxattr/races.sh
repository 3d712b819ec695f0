#!/usr/bin/env bash
# races.sh PROGRAM FOLDER: several runs at once make a data key of the same name. One of them may, and
# what it sealed opens. Runs in the folder of the data.
set -euo pipefail
vxattr=$1
rm -rf "$2"
mkdir -p "$2"
data=$PWD
cd "$2"

fail() { echo "$1" >&2; exit 1; }

for round in $(seq 50); do
    rm -f data.key
    for run in 1 2 3; do
        "$vxattr" seal "$data/settings.json" "$run.bin" --key-file "$data/key.hex" \
            --new-data-key data.key 2>"$run.err" && touch "$run.good" &
    done
    wait
    [ "$(ls ./*.good | wc -l)" -eq 1 ] || fail "round $round: not one good run: $(ls ./*.good)"
    sealed=$(basename ./*.good .good).bin
    "$vxattr" verify "$sealed" --key-file "$data/key.hex" --data-key data.key >verified ||
        fail "round $round: $sealed has lost its key"
    [ "$(ls ./*.bin)" = "./$sealed" ] || fail "round $round: outputs of runs that failed: $(ls)"
    cat ./*.err >errors
    grep -qvx 'vxattr: data.key: is there already, and is not replaced' errors &&
        fail "round $round: says $(cat errors)"
    rm ./*.good ./*.bin ./*.err
done

! ls | grep -qE '\.[A-Za-z0-9]{6}$' || fail "a file was left over: $(ls)"
