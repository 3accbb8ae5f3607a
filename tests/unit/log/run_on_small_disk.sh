#!/bin/sh
# run_on_small_disk.sh <run-under-wine.sh> <Wine's loader> <program> [argument...]: runs the program as if on a nearly
# full disk: files end at 100 KB or 200 KB, depending on the shell's units, and a write beyond the end is cut short and
# then refused.
trap '' XFSZ
# Starts Wine's server first, because its own files must not be limited.
"$1" "$2" cmd /c ver >/dev/null 2>&1
ulimit -f 200
exec "$@"
