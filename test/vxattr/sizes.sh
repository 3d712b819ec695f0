#!/usr/bin/env bash
# sizes.sh PROGRAM FOLDER: neither the input nor what is printed of it grows past its bounds. Runs in
# the folder of the data.
set -euo pipefail
vxattr=$1
rm -rf "$2"
mkdir -p "$2"
cd "$2"

fail() { echo "$1" >&2; exit 1; }

# The size of a file is known before its first byte has been looked at, which is bad here.
truncate -s 1G sparse
for input in sparse -; do
    ! "$vxattr" stat $input --from json --max-size 100000 <sparse 2>err || fail "no failure"
    grep -q 'has more than 100000 bytes, which --max-size allows$' err || fail "$input: $(cat err)"
done

# A long name is in the path of many values, and is spelled out for none of them.
name=$(printf '%0100000d' 0)
numbers=$(seq -f '"%.0f":1' -s, 5000)
printf '{"%s":{%s}}' "$name" "$numbers" >a.json
printf '{"%s":{%s}}' "$name" "${numbers//:1/:2}" >b.json
"$vxattr" convert a.json a.bin
printf '{"%s":[%s1]}' "$name" "${numbers//[^,]/}" | sed 's/,/1,/g' >list.json
"$vxattr" convert list.json list.bin
"$vxattr" inspect list.bin >shown
grep -qE "^ +[0-9]+ +1 .*  integer  '0{256}'\.\.\.\(\+99744\)$" shown || fail "inspect: $(head -c 1000 shown)"
! "$vxattr" diff a.bin b.json >differences || fail "equal"
grep -qxE -- '- 0{128}\.\.\.\(\+99749\)0{123}/4999: \[Integer: \{1\}\]' differences ||
    fail "diff: $(head -c 1000 differences)"
for file in shown differences; do
    [ "$(wc -c <$file)" -lt 4000000 ] || fail "$file: $(wc -c <$file) bytes"
done
