# The trace events of zeltctl recording profile in a viewer for such events, in a real browser. Sourced by ./dev, used by page.sh.

# The viewer is one page with what it needs beside it, and runs without a network.
viewerPackage=speedscope
viewerVersion=1.25.0
viewerHash=2831f1e0d26df914b477e522d78b8485511495a6af81a0b88158f8b48f9e0d03

TraceView()
{
    local viewer=$root/build/sources/$viewerPackage trace=$pageFolder/trace.json view
    [ -f "$viewer/dist/release/index.html" ] ||
        Step trace-viewer "Fetching $viewerPackage $viewerVersion" \
            FetchNpmPackage "$viewerPackage" "$viewerVersion" "$viewerHash" "$viewer"
    LoadTrace tests/recordings/golden/sample_recording.zlr
    view="$viewer/dist/release/index.html#localProfilePath=$pageFolder/trace.js"
    Step trace-table "Opening trace events in $viewerPackage" \
        Browse "$view&view=sandwich" --virtual-time-budget=8000 --dump-dom
    Step trace-check "Comparing what it shows" perl tests/recordings/check_trace_view.pl "$trace" "$logFolder/trace-table.log"
    # Prefer a recording of the demonstration: it has more than two calls.
    local recordings=(build/wine/demo/drive_c/users/*/Desktop/*/*.zlr)
    [ ! -f "${recordings[0]}" ] || LoadTrace "${recordings[0]}"
    Step trace-picture "Taking a screenshot of it" Browse "$view&view=left-heavy" --window-size=1000,600 \
        --virtual-time-budget=8000 "--screenshot=$pageFolder/trace.png"
}

# LoadTrace <recording>: writes its trace events as a script for the viewer, because a page may not read another file, but may run
# one.
LoadTrace()
{
    build/native/ctl/zeltctl recording profile --trace-events "$1" >"$pageFolder/trace.json"
    printf 'speedscope.loadFileFromBase64("trace.json", "%s")\n' "$(base64 -w0 "$pageFolder/trace.json")" \
        >"$pageFolder/trace.js"
}
