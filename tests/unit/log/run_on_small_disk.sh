#!/bin/sh
# run_on_small_disk.sh <run-under-wine.sh> <Wine's loader> <program> [argument...]: runs the program as if on a disk that is
# soon full: files end at 100 KB or 200 KB, as the shell counts, and a write that goes beyond is cut short and then refused.
trap '' XFSZ
# Wine's server is started before: its own files are not meant.
"$1" "$2" cmd /c ver >/dev/null 2>&1
ulimit -f 200
exec "$@"
