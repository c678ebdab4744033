#!/usr/bin/env bash
# A session under valgrind must lose no memory of the library: memory-test.sh CLIENT
# What EFL, fontconfig and GLib keep until the process ends is theirs; a loss counts when the library allocated it.
set -euo pipefail
client=$1
log=$(mktemp)
trap 'rm -f "$log"' EXIT
G_SLICE=always-malloc valgrind --leak-check=full --show-leak-kinds=definite,indirect --num-callers=40 \
    --trace-children=no --log-file="$log" "$client" session
grep -q "ERROR SUMMARY" "$log"
if awk '/ are definitely lost| bytes in .* definitely lost/ { record = ""; inside = 1 }
        inside { record = record $0 "\n" }
        /^==[0-9]+== *$/ { if (inside && record ~ /libvaultpad\.so/) { printf "%s", record; found = 1 } inside = 0 }
        END { exit !found }' "$log"; then
    echo "the library lost the memory above"
    exit 1
fi
if grep -B2 -A12 -E "Invalid (read|write)|uninitialised" "$log" | grep -q "libvaultpad"; then
    cat "$log"
    echo "the library touched memory that is not its own"
    exit 1
fi
echo "no memory of the library was lost"
