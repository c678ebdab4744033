#!/usr/bin/env bash
# A television build without the television's packages says what is missing, and how to name it.
#   television-build.sh SOURCES WORK
set -euo pipefail
sources=$1 work=$2
rm -rf "$work"
mkdir -p "$work"
if cmake -S "$sources" -B "$work" -G Ninja -D VAULTPAD_PLATFORM=television -D VAULTPAD_MODULE_LOG=no-such-log \
    > "$work/output" 2>&1; then
    echo "television-build.sh: configuring succeeded without the television's packages" >&2
    exit 1
fi
for line in "dlog: pkg-config finds no no-such-log; install its development package" \
    "trusted-core: name its pkg-config module with -D VAULTPAD_MODULE_TRUSTED_CORE="; do
    if ! tr -s ' \n' ' ' < "$work/output" | grep -qF -- "$line"; then
        echo "television-build.sh: the message lacks: $line" >&2
        cat "$work/output" >&2
        exit 1
    fi
done
