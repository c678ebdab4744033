#!/bin/sh
# Compares a library's dynamic symbols with declarations.
#   check-exports.sh exported LIBRARY FOLDER    the library defines exactly what FOLDER/vaultpad/vaultpad.h exports
#   check-exports.sh undefined LIBRARY FOLDER   every function of FOLDER/vaultpad-platform/*.h is undefined in it
set -eu

mode=$1
library=$2
folder=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# One declaration per line, preprocessed, without the lines of system headers.
declarations() {
    for header in "$@"; do
        "${CC:-cc}" -E -I"$folder" "$header" |
            awk -v header="$header" '/^# [0-9]+ "/ { own = index($0, "\"" header "\"") > 0; next } own'
    done | tr '\n' ' ' | sed 's/{[^{}]*}/{}/g; s/{[^{}]*}/{}/g' | tr ';' '\n'
}

# The declared name: before the argument list, or last.
names() {
    sed 's/__attribute__ *((format[^)]*)*)//; s/__attribute__ *((visibility("default")))//; s/(.*//; s/ *$//; s/.*[ *]//' |
        grep -v '^$' | sort -u
}

case $mode in
    exported)
        declarations "$folder/vaultpad/vaultpad.h" | grep 'visibility("default")' | names > "$work/declared"
        nm -D --defined-only "$library" | awk '{ print $NF }' | sed 's/@.*//' | sort -u > "$work/found"
        ;;
    undefined)
        declarations "$folder"/vaultpad-platform/*.h | grep '(' | grep -v typedef | grep -v '(\*' | names \
            > "$work/declared"
        nm -D --undefined-only "$library" | awk '{ print $NF }' | sed 's/@.*//' | sort -u > "$work/undefined"
        comm -12 "$work/declared" "$work/undefined" > "$work/found"
        ;;
    *)
        echo "check-exports.sh: unknown mode $mode: use exported or undefined" >&2
        exit 2
        ;;
esac

if [ "$(wc -l < "$work/declared")" -lt 10 ]; then
    echo "check-exports.sh: only these declarations were found in $folder:" >&2
    cat "$work/declared" >&2
    exit 2
fi
if ! diff -u "$work/declared" "$work/found"; then
    echo "check-exports.sh: $library differs from the declarations (- declared, + found)" >&2
    exit 1
fi
echo "$(wc -l < "$work/declared") names agree"
