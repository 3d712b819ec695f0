#!/usr/bin/env bash
# messages.sh SERVER CLIENT ATTACKER FOLDER KIB: clients with two versions of a package and peers that
# break every rule, all at one server, which then starts again. FOLDER is made anew. The server may use
# KIB of memory; 0 means any.
set -euo pipefail
server=$1 client=$2 attacker=$3 memory=$5
rm -rf "$4"
mkdir -p "$4"
cd "$4"

fail() { echo "$1" >&2; cat server.log >&2; exit 1; }

start_server() {
    : >server.log
    coproc SERVER { exec "$server" socket store 1 2>&1; }
    pid=$SERVER_PID
    exec {lines}<&"${SERVER[0]}"
}

expect() { # PATTERN: reads lines of the server until one matches, which is then in `line`
    while read -r -t 30 line <&"$lines"; do
        echo "$line" >>server.log
        # shellcheck disable=SC2053
        [[ $line == $1 ]] && return
    done
    fail "the server does not print $1"
}

stop_server() { # REPORTS PEERS
    local code=0
    kill "$pid"
    expect "server: took $1 reports of $2 peers"
    expect 'server: peak memory *'
    wait "$pid" || code=$?
    [ "$code" -eq 0 ] || fail "the server ends with $code"
}

send() { # NAME VERSION COUNT: all of it arrives
    "$client" socket store/key "$@" >"$1.log" || fail "the client $1 fails: $(cat "$1.log")"
    grep -q "^client: the server has taken $3, the highest load is 0.9" "$1.log" || fail "$(cat "$1.log")"
}

attack() { # ATTACK REASON
    "$attacker" socket "$1" >attack.log || fail "$1 is not stopped"
    expect "peer * refused: $2"
}

first=be8841eb-619d-d747-a50b-e3f334dfe145
second=622266a4-6944-854a-bcbc-8be264cbb1d6

# Two versions of a package, each of which the server asks for once.
start_server
expect 'server: knows 0 packages'
expect 'server: listens at socket'
send ada 2 500
expect "peer 1 (ada): asks for package $second"
expect "peer 1 (ada): brings package $second of 10 names"
expect 'peer 1 (ada): opened the secret "backup password" of 13 bytes'
expect 'peer 1 (ada): sent 500 in * a second, * us of processor time each'
send bob 1 500
expect "peer 2 (bob): brings package $first of 8 names"
[ "$(tr '\n' ' ' <"store/$first.names")" = "cpu host kind memory pid process sequence time " ] ||
    fail "the file of the package: $(cat "store/$first.names")"
[ "$("$server" socket store 2>&1 || true)" = "message_server: socket: another server listens here" ] ||
    fail "two servers at one socket"

# Four peers that let the server wait and one that sends at the same time, then the others.
waiting=(mute stalled silent_package deaf)
for name in "${waiting[@]}"; do
    "$attacker" socket "$name" >"$name.log" &
    attackers+=($!)
done
send carl 2 5000
for i in "${attackers[@]}"; do
    wait "$i" || fail "a peer that waits is not stopped"
    expect 'peer * refused: lets the server wait for too long'
done
attack oversized '*1073741824 bytes*262144*'
attack noise 'Ill-formed serialized data at byte 0*'
attack cut 'The stream ends inside a frame'
attack wrong_package 'package 32d8cf0a-6e54-3341-97bc-23dc70f3774e was not asked for'
attack foreign_package "*package*$first"
attack many_names 'a message of 10000 attributes'
attack deep 'More than 512 lists and records are open'
attack forged_secret '*fails authentication*'
attack wrong_reports 'too many wrong reports'
grep -q '^peer [0-9]* (mallory?peer 1: has left): refused: too many wrong' server.log || fail 'forged lines'
send ada 2 500
stop_server 6500 18 # one of them was the second server, which looked whether there is another
size=${line//[^0-9]/}
[ "$memory" -eq 0 ] || [ "$size" -lt "$memory" ] || fail "$size KiB"

# The packages are there again, but for one whose file is damaged.
echo zone >>"store/$first.names"
start_server
expect 'packages: store/*: other names than its id says'
expect 'server: knows 1 packages'
send ada 2 500
expect 'peer 1 (ada): has left'
send bob 1 500
expect "peer 2 (bob): brings package $first of 8 names"
stop_server 1000 2
! grep 'ada.*package' server.log || fail "a package is not kept"
