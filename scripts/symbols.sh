# The lines at the addresses of a crash report. Sourced by ./dev.

shippedPrograms=(release/shell/ZELT.EXE release64/shell/ZELT64.EXE release/ctl/zeltctl.exe release64/ctl/zeltctl64.exe)

# Symbols [--zip ZIP] <program> <offset...>: prints the function and the line at each offset in the program, innermost first where
# functions are inlined. Without a zip of symbols, the programs in build/release and build/release64 must be those
# of the report.
Symbols()
{
    local zip='' program offset file
    if [ "${1:-}" = --zip ]; then
        [ -f "${2:-}" ] || Fail "There is no file \"${2:-}\"."
        zip=$2
        shift 2
    fi
    [ $# -ge 2 ] || Fail "./dev symbols [--zip ZIP] PROGRAM OFFSET... The program is ZELT.EXE, ZELT64.EXE, zeltctl.exe or zeltctl64.exe."
    program=$1
    shift
    InstallPackages build
    [ -z "$zip" ] || InstallPackages ship
    file=$(SymbolFile "$program" "$zip") || exit 1
    local tools=i686-w64-mingw32 base
    [[ $program != *64.* ]] || tools=x86_64-w64-mingw32
    base=$("$tools-objdump" -p "$file" | sed -n 's/^ImageBase[[:space:]]*//p')
    for offset; do
        [[ $offset =~ ^(0[xX])?[0-9a-fA-F]+$ ]] || Fail "\"$offset\" is not a hexadecimal number."
        # For a 32-bit program, addr2line drops the first underscore of a mangled name, and c++filt needs it.
        "$tools-addr2line" -e "$file" -f -i -p -a "$(printf '0x%x' $((16#$base + 16#${offset#0[xX]})))" |
            sed -E 's/(: |\(inlined by\) )Z/\1_Z/; s# at (\./build/[^/]*/)?\./# at #' | "$tools-c++filt" -n
    done
}

# SymbolFile <program> <zip>: prints the path of the program's symbols, taken from the zip if there is one.
SymbolFile()
{
    local known file
    for known in "${shippedPrograms[@]}"; do
        [ "${known##*/}" = "$1" ] || continue
        file=$root/build/$known.symbols
        if [ -n "$2" ]; then
            file=$root/build/$1.symbols
            unzip -p "$2" "$1.symbols" >"$file" || Fail "$2 has no symbols for $1."
        fi
        [ -s "$file" ] || Fail "There are no symbols for $1: ./dev package makes them."
        echo "$file"
        return
    done
    Fail "\"$1\" is not shipped. The programs are: ${shippedPrograms[*]##*/}."
}
