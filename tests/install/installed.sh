#!/usr/bin/env bash
# Uses an installed tree as somebody does who has nothing else of this project.
#   installed.sh CASE PREFIX EXAMPLES WORK
set -euo pipefail
case=$1 prefix=$2 examples=$3 work=$4
rm -rf "$work"
mkdir -p "$work"
cd "$work"
unset VAULTPAD_TELEVISION LOCPATH LD_LIBRARY_PATH
libraries=$(dirname "$(find "$prefix" -name libvaultpad.so)")
resources=$libraries/vaultpad/apps/vaultpad/res
keys="Right Return Down Return Down Return Down Return"

fail() {
    echo "installed.sh: $*" >&2
    exit 1
}

# What the holder of the private key reads from the files that the C client wrote.
decrypted() {
    openssl pkeyutl -decrypt -inkey key.pem -pkeyopt rsa_padding_mode:pkcs1 -in session-key.bin -out session-key
    openssl enc -d -aes-256-cbc -K "$(od -An -v -tx1 session-key | tr -d ' \n')" \
        -iv 00000000000000000000000000000000 -in data.bin | od -An -v -tx1 | tr -d ' \n'
}

use_clients() {
    export LD_LIBRARY_PATH=$libraries
    openssl genrsa -out key.pem 2048 2>/dev/null
    openssl rsa -in key.pem -modulus -noout > modulus
    # shellcheck disable=SC2086
    "$1/c-client" modulus $keys
    # One byte with the number of characters, and the characters in UTF-16.
    [ "$(decrypted)" = 043200350038003000 ] || fail "the C client's answer decrypts to $(decrypted)"
    # shellcheck disable=SC2086
    typed=$("$2/rsa-client" pinpad $keys Down Right Right Return)
    [ "$typed" = 2580 ] || fail "the RSA client read '$typed'"
    status=0
    "$2/rsa-client" pinpad XF86Back || status=$?
    [ "$status" -eq 1 ] || fail "the RSA client ended with $status when the pad was left"
    status=0
    env VAULTPAD_TELEVISION=/nonexistent "$2/rsa-client" pinpad Return || status=$?
    [ "$status" -eq 3 ] || fail "the RSA client ended with $status without a television"
}

# Skips what the compositor says until a line matches; its parts are in BASH_REMATCH.
compositor_says() {
    local line
    while IFS= read -r -t 20 -u "${compositor[0]}" line; do
        if [[ $line =~ ^$1$ ]]; then
            return
        fi
    done
    fail "the compositor did not say: $1"
}

# An EFL application with a window of its own, which gets the keys from the compositor.
use_efl_client() {
    export LD_LIBRARY_PATH=$libraries XDG_RUNTIME_DIR WAYLAND_DISPLAY
    # The path of a socket is short, which that of the work folder may not be.
    XDG_RUNTIME_DIR=$(mktemp -d)
    trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
    coproc compositor { exec "$prefix/bin/vaultpad-compositor"; }
    local compositor_pid=$! key client
    compositor_says "ready (.+)"
    WAYLAND_DISPLAY=${BASH_REMATCH[1]}
    "$1" 4 > typed &
    client=$!
    compositor_says "focus $client"
    for key in $keys; do
        echo "tap $key" >&"${compositor[1]}"
        compositor_says "key $key pressed $client grab"
    done
    wait "$client" || fail "the EFL client ended with $?: $(cat typed)"
    [ "$(cat typed)" = $'open\ntyped 2580\nclosed' ] || fail "the EFL client said: $(cat typed)"
    compositor_says "ungrab $client .*"
    kill "$compositor_pid"
    wait "$compositor_pid" || fail "the compositor ended with $?"
}

case $case in
    demo)
        "$prefix/bin/vaultpad-demo" --frames frames < /dev/null | tee output
        grep -qx "Decrypted text: 2580" output || fail "the demo did not read 2580"
        [ -s frames/frame-0008.png ] || fail "the demo left no pictures"
        # The shipped library never speaks, and the library that does is not installed.
        status=0
        "$prefix/bin/vaultpad-demo" --voice --frames frames < /dev/null 2> errors || status=$?
        [ "$status" -eq 1 ] && grep -q -- "--voice works in a build tree only" errors ||
            fail "--voice ended with $status and said: $(cat errors)"
        # The trusted application of this tree, and no other, was started.
        mv "$prefix/bin/vaultpad-ta" away
        started=yes
        "$prefix/bin/vaultpad-demo" --display none < /dev/null || started=no
        mv away "$prefix/bin/vaultpad-ta"
        [ "$started" = no ] || fail "the demo takes its trusted application from elsewhere"
        ;;
    tools)
        "$prefix/bin/vaultpad-layout" check "$resources"/xml/normal/*.xml
        "$prefix/bin/vaultpad-layout" render "$resources/xml/normal/pinpad.xml" -o pinpad.png
        [ -s pinpad.png ] || fail "nothing was drawn"
        "$prefix/bin/vaultpad-layout" gallery --help | grep -q -- "=$resources" ||
            fail "the gallery does not take the layouts of $resources"
        ;;
    cmake)
        for example in c-client rsa-client; do
            cmake -S "$examples/$example" -B "$example" -G Ninja -D CMAKE_PREFIX_PATH="$prefix"
            cmake --build "$example"
        done
        use_clients c-client rsa-client
        ;;
    make)
        cp -r "$examples" .
        for example in c-client rsa-client; do
            make -C "examples/$example" PKG_CONFIG="env PKG_CONFIG_PATH=$libraries/pkgconfig pkg-config"
        done
        use_clients examples/c-client examples/rsa-client
        ;;
    efl-client)
        cmake -S "$examples/efl-client" -B . -G Ninja -D CMAKE_PREFIX_PATH="$prefix"
        cmake --build .
        use_efl_client ./efl-client
        ;;
    app-test-suite)
        cmake -S "$examples/app-test-suite" -B . -G Ninja -D CMAKE_PREFIX_PATH="$prefix"
        cmake --build .
        ./parental-lock-test
        [ -s evidence/UnlocksWithItsPin/frame-0008.png ] || fail "no evidence was left"
        ;;
    *)
        fail "$case: use demo, tools, cmake, make, efl-client or app-test-suite"
        ;;
esac
