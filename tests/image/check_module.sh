#!/usr/bin/env bash
# Checks one property of a built module from outside.
#
#   check_module.sh exports|imports|hardening|resources|version|size DLL
set -euo pipefail

check=${1:?name a check}
dll=${2:?name the DLL}
[ -f "$dll" ] || { echo "no such file: $dll" >&2 && exit 1; }
objdump=x86_64-w64-mingw32-objdump

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

exports() {
    same_lines "DllCanUnloadNow
DllGetClassObject
DllRegisterServer
DllUnregisterServer" "$(headers | sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/s/^[[:space:]]*\[ *[0-9]*\] //p' | sort)"
}

# Only libraries that every Windows from 7 on has; no compiler runtime, nothing to install beside us.
imports() {
    local allowed='^(advapi32|crypt32|gdi32|kernel32|msvcrt|ole32|oleaut32|shell32|shlwapi|user32|version|wintrust)\.dll$'
    local found
    found=$(headers | sed -n 's/.*DLL Name: //p' | tr '[:upper:]' '[:lower:]' | sort -u)
    [ -n "$found" ] || fail "no import table"
    local other
    other=$(grep -vE "$allowed" <<<"$found" || true)
    [ -z "$other" ] || fail "imports outside the allow-list: $other"
    # Every system function stands in the import table, but for the dialog library's two ordinals.
    headers_hold 'Entry d 0+ 0+ Delay' || fail "delay-loaded imports"
}

hardening() {
    local flags
    flags=$(headers | sed -n '/^DllCharacteristics/,/^SizeOfStackReserve/p')
    local flag
    for flag in HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT; do
        grep -q "$flag" <<<"$flags" || fail "$flag is not set"
    done
    # Relocations make the address-space flags true.
    headers_hold 'Entry 5 0*[1-9a-f][0-9a-f]* ' || fail "no relocations"
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
        [ "$sizes" = "16:32 20:32 24:32 32:32 40:32 48:32 64:32 128:32 256:32 " ] || fail "icon $icon holds $sizes"
    done
}

version() {
    local text
    text=$(wrestool -x -t 16 --raw "$dll" | iconv -f UTF-16LE -t UTF-8 -c 2>/dev/null | tr '\0' '\n')
    grep -q 'Orvane Vaultkeep Shell Extension' <<<"$text" || fail "no file description"
    grep -q '1.0.0.0' <<<"$text" || fail "no version"
}

# It is loaded into every process with a file dialog: growth beyond this wants a reason.
size() {
    local bytes limit=2500000
    bytes=$(stat -c %s "$dll")
    echo "$bytes bytes"
    [ "$bytes" -lt "$limit" ] || fail "$bytes bytes, more than $limit"
}

case $check in
exports | imports | hardening | resources | version | size) "$check" && echo "passed: $check" ;;
*) fail "unknown check" ;;
esac
