#!/usr/bin/env bash
# Checks one property of a library that ships, 64-bit or 32-bit, from outside.
#
#   check_image.sh imports|hardening|stack_guard|version DLL               of every one
#   check_image.sh exports|entry_points|resources|size orvshellext.dll     of the module alone
. "$(dirname "$0")/../../scripts/lib.sh"

check=${1:?name a check}
dll=${2:?name the DLL}
name=$(basename "$dll" .dll)
[ -f "$dll" ] || { echo "no such file: $dll" >&2 && exit 1; }
objdump=x86_64-w64-mingw32-objdump  # reads 32-bit images too

fail() {
    printf 'FAILED %s: %s\n' "$check" "$*" >&2
    exit 1
}

# Fails unless the lines in $2 are those in $1.
same_lines() {
    [ "$1" = "$2" ] || fail "expected:
$1
found:
$2"
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$objdump" -p "$dll" >"$work/headers"
headers() { cat "$work/headers"; }
# Reads a file, not a pipe: a reader that stops early would look like a failure of the writer.
headers_hold() { grep -qE "$1" "$work/headers"; }

is_64_bit() { headers_hold '^Magic[[:space:]]+020b'; }

entry_point_names="DllCanUnloadNow
DllGetClassObject
DllRegisterServer
DllUnregisterServer"

exports() {
    same_lines "$entry_point_names" "$(headers | sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/s/^[[:space:]]*\[ *[0-9]*\] //p' | sort)"
}

# Each export is a function of the module's own. System import libraries hold functions of the same names; one of
# those, linked by mistake, is a jump through the import table: registering would register that system library.
entry_points() {
    local name base size start rva address code
    for name in $entry_point_names; do
        [ "$(headers | grep -cE "[[:space:]]_?$name(@[0-9]+)?\$")" = 1 ] || fail "$name is an import"
    done
    # A forwarder would read "Forwarder RVA".
    headers | sed -nE 's/^.*\] ([0-9a-f]+) Export RVA$/\1/p' >"$work/entry_points"
    [ "$(wc -l <"$work/entry_points")" = 4 ] || fail "not every export is code of the module"
    base=$(headers | awk '$1 == "ImageBase" {print $2}')
    read -r size start < <("$objdump" -h "$dll" | awk '$2 == ".text" {print $3, $4}')
    while read -r rva; do
        address=$((16#$base + 16#$rva))
        if ((address < 16#$start || address >= 16#$start + 16#$size)); then
            fail "export at $rva: outside the code section"
        fi
        code=$("$objdump" -d --start-address=$address --stop-address=$((address + 16)) "$dll" |
            grep -m1 -P '^ *[0-9a-f]+:\t') || fail "export at $rva: no code"
        ! grep -qE 'jmp +\*' <<<"$code" || fail "export at $rva: leads into an import: $code"
    done <"$work/entry_points"
}

# The texts are data: nothing in them runs.
is_data() { headers_hold '^AddressOfEntryPoint[[:space:]]+0+$'; }

# Only libraries that every Windows from 7 on has; no compiler runtime, nothing to install beside us.
imports() {
    local allowed='advapi32|crypt32|gdi32|kernel32|msvcrt|ole32|oleaut32|shell32|shlwapi|user32|version|wintrust'
    local found
    found=$(headers | sed -n 's/.*DLL Name: //p' | tr '[:upper:]' '[:lower:]' | sort -u)
    case $name in
    orvres)
        [ -z "$found" ] || fail "data that imports: $found"
        return
        ;;
    orvdialog) allowed+='|comctl32|uxtheme' ;;
    orvsetup) allowed='advapi32|kernel32|msi|msvcrt|ole32|shell32' ;;
    esac
    [ -n "$found" ] || fail "no import table"
    local other
    other=$(grep -vE "^($allowed)\.dll\$" <<<"$found" || true)
    [ -z "$other" ] || fail "imports outside the allow-list: $other"
    # Every system function stands in the import table, but for the dialog library's two ordinals.
    headers_hold 'Entry d 0+ 0+ Delay' || fail "delay-loaded imports"
}

hardening() {
    local flags
    flags=$(headers | sed -n '/^DllCharacteristics/,/^SizeOfStackReserve/p')
    local flag wanted="DYNAMIC_BASE NX_COMPAT"
    is_64_bit && wanted+=" HIGH_ENTROPY_VA"
    for flag in $wanted; do
        grep -q "$flag" <<<"$flags" || fail "$flag is not set"
    done
    # With a TLS directory the system would call into the library at each start and end of a host's thread.
    headers_hold 'Entry 9 0+ 0+ Thread Storage' || fail "a TLS directory"
    "$objdump" -h "$dll" | paste -sd ' ' | sed -E 's/ +([0-9]+) (\.[^ ]+)/\n\2/g' >"$work/sections"
    ! grep -E '^\.[^ ]+ .*CODE' "$work/sections" | grep -v READONLY || fail "a section can be written and run"
    ! is_data || return 0
    # Relocations make the address-space flags true.
    headers_hold 'Entry 5 0*[1-9a-f][0-9a-f]* ' || fail "no relocations"
}

# Functions whose variables could be written past their end look at the guard before they return. What ships has no
# symbols; they are beside it.
stack_guard() {
    ! is_data || return 0
    local symbols=$dll failing calls
    [ ! -f "$dll.debug" ] || symbols=$dll.debug
    failing=$("${objdump%objdump}nm" "$symbols" | sed -n 's/^0*\([0-9a-f]*\) T _*__stack_chk_fail$/\1/p')
    [ -n "$failing" ] || fail "there is no guard"
    calls=$("$objdump" -d "$dll" | grep -cE "call +(0x)?0*$failing\\b" || true)
    echo "$calls functions are guarded"
    [ "$calls" -ge 20 ] || fail "$calls functions are guarded"
}

resources() {
    same_lines "--type=14 --name=103
--type=14 --name=105
--type=14 --name=107
--type=14 --name=108
--type=16 --name=1
--type=5 --name=104" "$(wrestool -l "$dll" | sed -E 's/^(--type=[^ ]+ --name=[^ ]+).*/\1/' | grep -vE 'type=3 ' | sort)"
    local icon sizes
    for icon in 103 105 107 108; do
        wrestool -x -t 14 -n "$icon" "$dll" >"$work/$icon.ico"
        sizes=$(icotool -l "$work/$icon.ico" | sed -E 's/.*--width=([0-9]+).*bit-depth=([0-9]+).*/\1:\2/' | sort -n | tr '\n' ' ')
        [ "$sizes" = "16:32 20:32 24:32 32:32 40:32 48:32 64:32 96:32 128:32 256:32 " ] || fail "icon $icon holds $sizes"
    done
}

version() {
    local text wanted
    wanted=$(version_of_tree).0
    text=$(wrestool -x -t 16 --raw "$dll" | iconv -f UTF-16LE -t UTF-8 -c 2>/dev/null | tr '\0' '\n')
    grep -qx 'Orvane Vaultkeep' <<<"$text" || fail "no name of the product"
    same_lines "$wanted $wanted" "$(grep -A 2 -E '(File|Product)Version$' <<<"$text" | grep -E '^[0-9.]+$' | xargs)"
    # The same as numbers, which is what an installer compares.
    wrestool -x -t 16 --raw "$dll" | perl -0777 -ne '
        @n = unpack("v4", $1) and print "$n[1].$n[0].$n[3].$n[2]" if /\xbd\x04\xef\xfe.{4}(.{8})/s' >"$work/numbers"
    same_lines "$wanted" "$(cat "$work/numbers")"
}

# It is loaded into every process with a file dialog. What there is today, and room for some hundred lines more:
# anything larger that comes along (a stream, a locale, another copy of a template) is to be noticed and wanted.
size() {
    local bytes limit=800000
    is_64_bit && limit=700000
    bytes=$(stat -c %s "$dll")
    echo "$bytes bytes"
    [ "$bytes" -lt "$limit" ] || fail "$bytes bytes, more than $limit"
}

case $check in
exports | entry_points | imports | hardening | stack_guard | resources | version | size) "$check" && echo "passed: $check" ;;
*) fail "unknown check" ;;
esac
