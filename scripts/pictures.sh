# The pictures of the user guide, made from the windows that the tests show. Sourced by ./dev.

# Test program below build/i686/tests/windows | test | its screenshot | picture
pictureTable='
window_tests        | MainWindow.ShowsAPackageARow                | main-window        | main-window
window_tests        | AddPackagePictures.APackageChosenForExport  | export-package     | export-package
viewer/viewer_tests | ViewerPictures.ALogWithErrors               | viewer-with-errors | log-viewer
window_tests        | ReportProgram.MakesItsReportWithTheToolBesideIt | report            | report
viewer/viewer_tests | ViewerCommands.SearchRefusesAnEmptyText     | search             | search
viewer/viewer_tests | ViewerErrors.ShowLineCallAndObjectOnRequest | viewer-error-details | error-details
'

Pictures()
{
    LockTree
    InstallPackages build pictures
    Build i686
    # Debian keeps Wine's own fonts, with the symbols of title bars, where Wine does not look for them.
    export FONTCONFIG_FILE=$root/build/pictures-fonts.conf
    printf '%s\n' '<?xml version="1.0"?>' '<!DOCTYPE fontconfig SYSTEM "fonts.dtd">' '<fontconfig>' \
        '<include>/etc/fonts/fonts.conf</include>' '<dir>/usr/share/wine/fonts</dir>' '</fontconfig>' >"$FONTCONFIG_FILE"
    UsePrefix pictures
    local folder=docs/user-guide/images program test screenshot picture
    mkdir -p "$folder"
    while IFS='| ' read -r program test screenshot picture; do
        [ -n "$program" ] || continue
        rm -f "build/i686/screenshots/$screenshot.bmp"
        Step "picture-$picture" "Showing $picture" \
            timeout 300 wine "build/i686/tests/windows/$program.exe" "--gtest_filter=$test"
        [ -s "build/i686/screenshots/$screenshot.bmp" ] || Fail "The test $test kept no screenshot $screenshot."
        # Few colours and no dates, so that a picture changes only when its window does.
        Step "convert-$picture" "Converting $picture" convert "build/i686/screenshots/$screenshot.bmp" \
            -alpha off +dither -colors 128 -strip -define png:exclude-chunk=time,date "$folder/$picture.png"
    done <<<"$pictureTable"
    ls -l "$folder"
}
