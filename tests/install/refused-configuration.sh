#!/usr/bin/env bash
# Where something is missing, configuring fails and says what, and how to mend it.
#   refused-configuration.sh SOURCES WORK OPTION... -- PART-OF-THE-MESSAGE...
set -euo pipefail
sources=$1 work=$2
shift 2
options=()
while [ "$1" != -- ]; do
    options+=("$1")
    shift
done
shift
rm -rf "$work"
mkdir -p "$work"
if cmake -S "$sources" -B "$work" -G Ninja "${options[@]}" > "$work/output" 2>&1; then
    echo "refused-configuration.sh: configuring succeeded with ${options[*]}" >&2
    exit 1
fi
for line in "$@"; do
    if ! tr -s ' \n' ' ' < "$work/output" | grep -qF -- "$line"; then
        echo "refused-configuration.sh: the message lacks: $line" >&2
        cat "$work/output" >&2
        exit 1
    fi
done
