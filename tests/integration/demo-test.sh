#!/usr/bin/env bash
# The demo as a user runs it without a terminal, with one of the two families of functions: demo-test.sh DEMO csapi|plain
set -euo pipefail
demo=$1
family=$2
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
failures=0

# expect NAME STATUS TEXT ARGUMENTS...: the demo must end with the status and say the text.
expect() {
    local name=$1 status=$2 text=$3 got=0
    shift 3
    "$demo" "$@" > "$folder/output" 2>&1 < /dev/null || got=$?
    if [ "$got" -ne "$status" ] || ! grep -qF -- "$text" "$folder/output"; then
        echo "FAILED: $name: status $got instead of $status, or no \"$text\" in:"
        cat "$folder/output"
        failures=$((failures + 1))
    fi
}

typed="Decrypted text: 2580"
csapi_family()
{
    expect "types 2580 by itself" 0 "$typed" --frames "$folder/frames"
    [ "$(ls "$folder/frames" | wc -l)" -ge 9 ] || { echo "FAILED: too few frames"; failures=$((failures + 1)); }
    for orientation in landscape portrait portrait-reversed; do
        for type in pinpad keyboard; do
            expect "$type $orientation" 0 "$typed" --type "$type" --orientation "$orientation" --display none
            expect "$type $orientation mirrored" 0 "$typed" --type "$type" --orientation "$orientation" --reverse --display none
        done
    done
    expect "1024-bit key" 0 "Encrypted session key: 128 bytes" --rsa-bits 1024 --display none
    expect "2048-bit key" 0 "Encrypted session key: 256 bytes" --rsa-bits 2048 --display none
    openssl genrsa -out "$folder/key.pem" 2048 2> /dev/null
    expect "kept key" 0 "$typed" --rsa-key "$folder/key.pem" --display none
    expect "key and size" 108 "excludes" --rsa-key "$folder/key.pem" --rsa-bits 1024
    expect "no key file" 1 "$folder/absent.pem: No such file or directory" --rsa-key "$folder/absent.pem" --display none
    expect "no key in the file" 1 "make one with openssl genrsa" --rsa-key "$0" --display none
    expect "PIN length" 0 "$typed" --pin-length 4 --display none
    expect "leaves" 0 "The pad was left" --keys Return,XF86Back --display none
    expect "keys run out" 1 "The keys ended before the pad was done." --keys Right --display none
    expect "wrong option" 109 "--nonsense" --nonsense
    expect "wrong type" 105 "pinpad" --type remote
    expect "wrong key list" 105 "write KEY*NUMBER" --keys 'Right*x'
    expect "no terminal" 1 "the pad could not be opened" --display terminal --keys Return
    expect "voice" 0 "What was spoken:" --voice --frames "$folder/spoken"
    ls "$folder/spoken" | grep -q -- '^voice-[0-9]*-key\.5\.wav$' || { echo "FAILED: key 5 was not spoken"; failures=$((failures + 1)); }
    expect "help" 0 "--high-contrast" --help
}

plain_family()
{
    expect "plain family" 0 "$typed" --family plain --display none
    expect "plain family, keyboard" 0 "$typed" --family plain --type keyboard --display none
    expect "plain family left by XF86Exit" 0 "The pad was left" --family plain --keys Return,XF86Exit --display none
    # What EFL prints about itself has no place in front of a user.
    "$demo" --family plain --display none > /dev/null 2> "$folder/errors" < /dev/null
    [ ! -s "$folder/errors" ] || { echo "FAILED: plain family says:"; cat "$folder/errors"; failures=$((failures + 1)); }
}

"${family}_family"
[ "$failures" -eq 0 ] && echo "all demo runs as expected"
exit "$failures"
