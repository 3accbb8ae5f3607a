# The manifests of a release for winget and Scoop, which say where the release can be downloaded. Sourced by ./dev.

# WriteManifests <version> <setup program> <zip> <folder>: ZELT_RELEASE_URL is the address of the folder with both files.
WriteManifests()
{
    local url=${ZELT_RELEASE_URL%/} file
    [[ $url =~ ^https://[^[:space:]\"\|]+$ ]] || Complain "ZELT_RELEASE_URL is not an address that begins with https://: $url"
    mkdir -p "$4/winget" "$4/scoop"
    for file in winget/{version,installer,locale.en-US}.yaml scoop/zelt.json; do
        FillManifest "$1" "$2" "$3" "$url" <"packaging/$file" >"$4/$(ManifestName "$file")"
        ! grep -n '@[A-Z_]*@' "$4/$(ManifestName "$file")" || Complain "$file has an unknown placeholder."
    done
    perl -MJSON::PP -0777 -ne 'decode_json($_)' "$4/scoop/zelt.json"
}

# The names that winget prescribes.
ManifestName()
{
    case $1 in
        winget/version.yaml) echo winget/Zeltora.ZELT.yaml ;;
        winget/*) echo "winget/Zeltora.ZELT.${1#winget/}" ;;
        *) echo "$1" ;;
    esac
}

FillManifest()
{
    sed "s|@VERSION@|$1|; s|@URL@|$4|; s|@SETUP@|$(basename "$2")|; s|@ZIP@|$(basename "$3")|
        s|@SETUP_SHA256@|$(Sha256 "$2" | tr a-f A-F)|; s|@ZIP_SHA256@|$(Sha256 "$3")|"
}

Sha256() { sha256sum "$1" | cut -d ' ' -f 1; }
