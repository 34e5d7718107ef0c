#!/usr/bin/env bash
# The checks of images find what they are there for: each is given copies of the good files with one fault in them.
#
#   planted.sh FOLDER     of the good files
# shellcheck disable=SC2016 # what stands in single quotes is Perl
set -euo pipefail
bin=$1
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

# The parts of an image, for the faults below: what stands where, and how it is changed. $_ is the whole file.
parts='
    $optional = 24 + unpack "V", substr $_, 0x3c, 4;
    $directories = $optional + (unpack("v", substr $_, $optional, 2) == 0x20b ? 112 : 96);
    $sections = $optional + unpack "v", substr $_, $optional - 4, 2;
    sub number { unpack "V", substr $_, $_[0], 4 }
    sub put { substr $_, $_[0], 4, pack "V", $_[1] }
    sub put_directory { put($directories + 8 * $_[0], $_[1]); put($directories + 8 * $_[0] + 4, $_[2]) }
    sub in_file {  # where in the file that stands which is loaded at $_[0]
        for ($at = $sections; number($at + 12) + number($at + 8) <= $_[0]; $at += 40) {}
        number($at + 20) + $_[0] - number($at + 12)
    }
    sub first_export { in_file(number(in_file(number($directories)) + 28)) }'

# plant LIBRARY FAULT: a copy with the fault, a piece of Perl.
plant() {
    cp "$bin/$1.dll" "$work/"
    [ ! -f "$bin/$1.dll.debug" ] || cp "$bin/$1.dll.debug" "$work/"
    perl -0777 -i -pe "$parts; $2" "$work/$1.dll"
}

# finds CHECK LIBRARY TEXT: in the copy.
finds() {
    local output
    if output=$("$here/check_image.sh" "$1" "$work/$2.dll" 2>&1) || [[ $output != *"$3"* ]]; then
        printf 'FAILED: %s of %s does not say "%s": %s\n' "$1" "$2" "$3" "$output" >&2
        failures=$((failures + 1))
    fi
}

# expect_found CHECK LIBRARY TEXT FAULT
expect_found() {
    plant "$2" "$4"
    finds "$1" "$2" "$3"
}

# flag NUMBER: takes it out of DllCharacteristics.
flag() { printf 'put($optional + 70, number($optional + 70) & ~%s)' "$1"; }

is_64_bit() { x86_64-w64-mingw32-objdump -f "$bin/orvres.dll" | grep -q x86-64; }

for library in orvshellext orvres orvdialog orvsetup; do
    [ -f "$bin/$library.dll" ] || continue
    expect_found hardening $library 'DYNAMIC_BASE is not set' "$(flag 0x40)"
    expect_found hardening $library 'NX_COMPAT is not set' "$(flag 0x100)"
    if is_64_bit; then
        expect_found hardening $library 'HIGH_ENTROPY_VA is not set' "$(flag 0x20)"
    fi
    expect_found hardening $library 'a TLS directory' 'put_directory(9, 0x1000, 24)'
    expect_found hardening $library 'can be written and run' 'put($sections + 36, number($sections + 36) | 1 << 31)'
    expect_found version $library '9.0' 's/(\xbd\x04\xef\xfe....).{4}/$1\0\0\x09\0/s'
    expect_found version $library '9.0' 's/(V\0e\0r\0s\0i\0o\0n\0\0\0(?:\0\0)?)1/${1}9/'
    [ $library != orvres ] || continue
    expect_found imports $library kernel99.dll 's/KERNEL32\.dll/KERNEL99.dll/i'
    expect_found hardening $library 'no relocations' 'put_directory(5, 0, 0)'
    # No symbol of that name, and one that nobody calls.
    guard=$(x86_64-w64-mingw32-nm "$bin/$library.dll.debug" | sed -n 's/.* \(_*__stack_chk_fail\)$/\1/p')
    plant $library ''
    x86_64-w64-mingw32-objcopy -N "$guard" "$work/$library.dll.debug"
    finds stack_guard $library 'there is no guard'
    x86_64-w64-mingw32-objcopy --add-symbol "$guard=.text:0,global,function" "$work/$library.dll.debug"
    finds stack_guard $library ' 0 functions'
done

cp "$bin/orvshellext.dll" "$work/orvres.dll"
finds imports orvres 'data that imports'
expect_found exports orvshellext DllCanUnloadNot 's/DllCanUnloadNow/DllCanUnloadNot/g'
expect_found entry_points orvshellext 'outside the code section' 'put(first_export(), 16)'
expect_found entry_points orvshellext 'leads into an import' 'substr $_, in_file(number(first_export())), 2, "\xff\x25"'
expect_found resources orvshellext 'type=6' '
    for ($type = in_file(number($directories + 16)) + 16; number($type) != 5; $type += 8) {}
    put($type, 6)'
expect_found size orvshellext 'more than' '$_ .= "x" x 200000'
[ "$failures" = 0 ] || exit 1
echo passed
