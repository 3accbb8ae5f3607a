#!/bin/sh
# Runs a program under Wine as if on a disk that is soon full: files end at 100 KB or 200 KB, as the shell counts, and a
# write that goes beyond is cut short and then refused.
trap '' XFSZ
# Wine's server is started before: its own files are not meant.
wine cmd /c ver >/dev/null 2>&1
ulimit -f 200
exec "$@"
