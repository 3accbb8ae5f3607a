# The page of zeltctl log export --html in a real browser: operated by a script, with screenshots. Sourced by ./dev.
# Not part of ./dev test: the browser is large.

Page()
{
    LockTree
    Build native
    InstallPackages page
    NeedTool chromium
    pageFolder=$root/build/page
    rm -rf "$pageFolder"
    mkdir -p "$pageFolder"
    local colour width
    MakePages
    Step page-check "Operating the page" Browse "$pageFolder/check.html" --dump-dom
    grep -qF '<title>fine</title>' "$logFolder/page-check.log" ||
        Fail "The page does not do what it should: $(grep -o '<title>[^<]*' "$logFolder/page-check.log")"
    # A wide window and a narrow one.
    for colour in light dark; do
        for width in 1200 420; do
            Step "page-$colour-$width" "Taking a screenshot of the page, $colour, $width pixels wide" \
                Browse "$pageFolder/$colour.html" "--window-size=$width,900" --hide-scrollbars --virtual-time-budget=2000 \
                "--screenshot=$pageFolder/$colour-$width.png"
            [ -s "$pageFolder/$colour-$width.png" ] || Fail "There is no screenshot of the page."
        done
    done
    TraceView
    printf '%s\n' "${green}The page works. Look at it:$plain" "$pageFolder"/*.png
}

# Makes the page with the script that operates it, and in each colour scheme the page as a user leaves it after searching and
# unfolding.
MakePages()
{
    local log=$root/tests/golden/sample_simulator_11.zlg colour
    build/native/ctl/zeltctl log export --html "$log" >"$pageFolder/log.html"
    PageWith check "$(<tests/log_commands/page_check.js)"
    for colour in light dark; do
        PageWith "$colour" "document.documentElement.classList.add('$colour');
            for (const call of document.querySelectorAll('main > details')) call.open = call.querySelectorAll('details').length < 5;
            get('find').value = 'temperature'; get('find').dispatchEvent(new Event('input'));
            let top = hits.find(hit => hit.closest('details details')).closest('main > details');
            while (!hits[here] || !top.contains(hits[here])) go(1);
            // A screenshot of a scrolled page is empty, so remove what is above instead.
            for (let i = 0; i < 6; ++i) top = top.previousElementSibling;
            while (top.previousElementSibling) top.previousElementSibling.remove();
            scrollTo(0, 0);"
    done
}

# PageWith <name> <script>: a copy of the page with a script appended.
PageWith()
{
    sed '/^<\/body>/,$d' "$pageFolder/log.html" >"$pageFolder/$1.html"
    printf '<script>\n{\n%s\n}\n</script>\n</body>\n</html>\n' "$2" >>"$pageFolder/$1.html"
}

# Browse <page> <option...>: runs a browser with a temporary profile.
Browse()
{
    local page=$1
    shift
    # A browser that runs as root has to do without its own sandbox; that is safe, because the page is ours.
    local walls=()
    [ "$EUID" -ne 0 ] || walls=(--no-sandbox)
    timeout 120 chromium --headless "${walls[@]}" --disable-gpu "--user-data-dir=$pageFolder/profile" "$@" "file://$page"
    rm -rf "$pageFolder/profile"
}
