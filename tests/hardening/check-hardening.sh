#!/bin/sh
# Looks for the traces of the hardening flags in a built file.
#   check-hardening.sh relocations|stack|pie|canaries|fortified FILE
#   check-hardening.sh installed BUILD-FOLDER             installed files look for libraries beside themselves
#   check-hardening.sh interposable LIBRARY FUNCTION...   the library calls each through a symbol of that very name
set -eu

property=$1
file=$2
shift 2

fail() {
    echo "check-hardening.sh: $file $1" >&2
    exit 1
}
undefined() {
    nm -D --undefined-only "$file" | awk '{ print $NF }' | sed 's/@.*//'
}

case $property in
    relocations) # resolved at load time, and then write-protected
        readelf -lW "$file" | grep -q ' *GNU_RELRO ' || fail "has no GNU_RELRO segment: link with -z relro"
        readelf -dW "$file" | grep -Eq '\((FLAGS|FLAGS_1)\).*NOW' || fail "binds lazily: link with -z now"
        ;;
    stack)
        readelf -lW "$file" | grep -Eq ' GNU_STACK .* RW +0x' || fail "has an executable stack: link with -z noexecstack"
        ;;
    pie)
        readelf -dW "$file" | grep -q '(FLAGS_1).*PIE' || fail "is no position-independent executable: link with -pie"
        ;;
    canaries)
        undefined | grep -qx '__stack_chk_fail' || fail "checks no canaries: compile with -fstack-protector-strong"
        ;;
    fortified)
        undefined | grep -v '^__stack_chk_fail$' | grep -Eq '^__.*_chk$' ||
            fail "calls no bounds-checking function of libc: compile with -O2 -D_FORTIFY_SOURCE=2"
        ;;
    installed)
        root=$(mktemp -d)
        trap 'rm -rf "$root"' EXIT
        DESTDIR=$root cmake --install "$file" > "$root/log" || fail "cannot be installed: $(cat "$root/log")"
        find "$root" -type f \( -perm -u+x -o -name '*.so*' \) > "$root/files"
        grep -q '/libvaultpad\.so' "$root/files" || fail "installs no library"
        while read -r installed; do
            # Its own folder and the one of the libraries beside it: a tree is installed under any prefix.
            folders=$(readelf -dW "$installed" 2> "$root/errors" |
                sed -nE 's/.*\((RPATH|RUNPATH)\).*\[(.*)\]/\2/p' | tr ':' '\n')
            ! printf '%s\n' "${folders:-\$ORIGIN}" | grep -vE '^\$ORIGIN(/\.\.)*(/[A-Za-z0-9_-]+)*/?$' ||
                fail "installs $installed with folders to search libraries in that are not relative to it"
        done < "$root/files"
        ;;
    interposable)
        undefined > "${TMPDIR:-/tmp}/undefined.$$"
        for function in "$@"; do
            grep -qx "$function" "${TMPDIR:-/tmp}/undefined.$$" || missing="${missing:-} $function"
        done
        rm -f "${TMPDIR:-/tmp}/undefined.$$"
        [ -z "${missing:-}" ] || fail "does not call through their symbols:$missing"
        ;;
    *)
        echo "check-hardening.sh: unknown property $property; see the head of the script" >&2
        exit 2
        ;;
esac
