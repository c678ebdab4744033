#!/bin/sh
# A Python that has none of the system's packages of modules.
exec python3 -S "$@"
