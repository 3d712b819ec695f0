#!/usr/bin/env bash
# pipes.sh PROGRAM FOLDER: what comes through pipes, in pieces, and goes to what is no plain file.
# Runs in the folder of the data.
set -euo pipefail
vxattr=$1
rm -rf "$2"
mkdir -p "$2"

fail() { echo "$1" >&2; exit 1; }

# A package is read once, from front to back.
[ "$("$vxattr" package show <(cat settings.names))" = "$("$vxattr" package show settings.names)" ] ||
    fail "a package through a pipe"
"$vxattr" show coded.bin --package - <settings.names >"$2/shown" || fail "a package on standard input"
"$vxattr" package make - settings.json | cmp - settings.names
"$vxattr" convert settings.txt "$2/coded.bin" --sorted --package <(cat settings.names)
cmp "$2/coded.bin" coded.bin # the package both reads and writes

# The form is guessed from the start of the text, however it arrives.
(printf '\n'; sleep 0.1; printf '{"a":'; sleep 0.1; printf '1}') | "$vxattr" get - a | grep -qx 1 ||
    fail "a text in pieces"

# A file keeps its rights, and a pipe stays one.
install -m 640 settings.names "$2/names"
"$vxattr" package make "$2/names" settings.json
[ "$(stat -c %a "$2/names")" = 640 ] || fail "package make changed the rights"
if printf '{"two\\nlines":1}' | "$vxattr" package make "$2/names" - 2>"$2/err"; then
    fail "a name of two lines"
fi
grep -qx "vxattr: $2/names: a name of the package cannot be written on one line" "$2/err"
cmp "$2/names" settings.names
[ "$(ls -d "$2"/names*)" = "$2/names" ] || fail "files left over: $(ls "$2")"
mkfifo "$2/fifo"
cat "$2/fifo" >"$2/copy" &
"$vxattr" package make "$2/fifo" settings.json
wait $!
[ -p "$2/fifo" ] && cmp "$2/copy" settings.names || fail "package make replaced a pipe"

# Texts that differ after the part that is shown. What is left out of a list is counted.
numbers=$(seq -s, 100)
printf '{"text":"%s,1"}' "$numbers" >"$2/a.json"
printf '{"text":"%s,2","list":[%s]}' "$numbers" "$numbers" >"$2/b.json"
"$vxattr" diff "$2/a.json" "$2/b.json" >"$2/difference" && fail "equal"
[ "$(grep '^. text' "$2/difference" | cut -c3- | sort -u | wc -l)" -eq 2 ] || fail "two lines that are the same"
grep -qE '^\+ list: .*\.\.\.\(\+68\)' "$2/difference" || fail "$(cat "$2/difference")"
