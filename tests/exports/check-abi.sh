#!/bin/sh
# Compares a library's binary interface with its description; with VAULTPAD_UPDATE_ABI=1, writes the description.
#   check-abi.sh LIBRARY HEADER-FOLDER DESCRIPTION
set -eu

library=$1
headers=$2
description=$3

if [ "${VAULTPAD_UPDATE_ABI:-}" = 1 ]; then
    exec abidw --exported-interfaces-only --headers-dir "$headers" --drop-private-types --no-corpus-path \
        --no-comp-dir-path --no-show-locs --no-elf-needed --type-id-style hash --out-file "$description" "$library"
fi
if ! abidiff --exported-interfaces-only --headers-dir2 "$headers" --drop-private-types \
    "$description" "$library"; then
    echo "check-abi.sh: the binary interface changed: clients built before may break. If that is meant, raise the" >&2
    echo "library's version and write the description anew: VAULTPAD_UPDATE_ABI=1 ctest --preset dev -R BinaryInterface" >&2
    exit 1
fi
