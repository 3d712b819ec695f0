#!/usr/bin/env bash
# sealing.sh PROGRAM FOLDER: values and keys are sealed, sealed anew and opened again, in files of
# FOLDER. Runs in the folder of the data.
set -euo pipefail
vxattr=$1
rm -rf "$2"
mkdir -p "$2"
cp settings.json "$2/work.json"
data=$PWD
cd "$2"

fail() { echo "$1" >&2; exit 1; }
is_same() { "$vxattr" diff "$1" "$2" || fail "$1 differs from $2"; }
refuses() { # MESSAGE ARGUMENT...: exit code 1, and a message that ends so
    local message=$1 code=0
    shift
    "$vxattr" "$@" >out 2>err || code=$?
    [ "$code" -eq 1 ] || fail "$*: exit code $code"
    [[ $(cat out err) == *"$message" ]] || fail "$*: says $(cat out err)"
}

# One attribute in place, under a new key in place, and open again.
"$vxattr" seal work.json work.json --name server/host --key-file "$data/key.hex" \
    --annotation note --category disk
"$vxattr" verify work.json --key-file "$data/key.hex" | grep -qx 'server/host: good'
"$vxattr" rekey work.json work.json --key-file "$data/key.hex" --new-key-file "$data/key32.raw" \
    --key-id 01234567-89ab-cdef-0123-456789abcdef
"$vxattr" show work.json | grep -q '"note" (cipher=EAX_AES256' || fail "rekey lost the annotation"
"$vxattr" show work.json | grep -q "'disk':01234567" || fail "rekey lost the category"
cp work.json before.json
refuses 'Expexted=32, Provided=16' rekey work.json work.json \
    --key-file "$data/key.hex" --new-key-file "$data/other.hex"
cmp work.json before.json
"$vxattr" open work.json open.json --name server/host --key-file "$data/key32.raw"
is_same open.json "$data/settings.json"
[ "$(stat -c %a open.json)" = 600 ] || fail "others may read what was opened"

# A data key under a master key; the data key moves to another master and still opens.
"$vxattr" seal "$data/coded.bin" sealed.bin --package "$data/settings.names" \
    --key-file "$data/key.hex" --new-data-key data.key
ln -s nowhere.key link.key
for key in data.key link.key; do
    refuses "$key: is there already, and is not replaced" seal "$data/settings.bin" other.bin \
        --key-file "$data/key.hex" --new-data-key "$key"
done
[ ! -e nowhere.key ] || fail "a data key behind a link"
code=0
"$vxattr" seal "$data/settings.json" both.bin --key-file "$data/key.hex" \
    --new-data-key ./both.bin 2>err || code=$?
[ "$code" -eq 2 ] && [ ! -e both.bin ] || fail "a data key was written over: $(cat err)"
refuses 'No such file or directory' seal "$data/settings.json" missing/out.bin \
    --key-file "$data/key.hex" --new-data-key no.key
[ ! -e no.key ] || fail "a data key of nothing"
# Bytes may have been taken before a device fails, so the key that opens them stays.
refuses 'No space left on device' seal "$data/settings.json" /dev/full --to binary \
    --key-file "$data/key.hex" --new-data-key full.key
grep -q '^vxattr: full.key: the new key stays' err || fail "says $(cat err)"
"$vxattr" open full.key full.raw --as-key --key-file "$data/key.hex"
# With standard error closed, a notice goes nowhere.
echo '{"n":12345678901234567890}' | "$vxattr" seal - lossy.bin --key-file "$data/key.hex" \
    --new-data-key lossy.key 2>&-
"$vxattr" verify lossy.bin --key-file "$data/key.hex" --data-key lossy.key >out
"$vxattr" rekey data.key data.bin --key-file "$data/key.hex" --new-key-file "$data/key32.raw"
"$vxattr" open sealed.bin open.bin --key-file "$data/key32.raw" --data-key data.bin
is_same open.bin "$data/settings.json"
refuses 'wrong key, or it was tampered with' verify sealed.bin --key-file "$data/key.hex"
refuses 'Expexted=32, Provided=5' open sealed.bin no.bin \
    --key-file "$data/short.key" --data-key data.bin
[ ! -e no.bin ] && [ ! -e other.bin ] || fail "an output of a failed command"

# A key of its own goes in and comes out as bytes.
"$vxattr" seal "$data/key32.raw" wrapped.bin --as-key --key-file "$data/key.hex"
"$vxattr" open wrapped.bin out.key --as-key --key-file "$data/key.hex"
cmp out.key "$data/key32.raw"

! ls | grep -qE '\.[A-Za-z0-9]{6}$' || fail "a file was left over: $(ls)"
