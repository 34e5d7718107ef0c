#!/usr/bin/env bash
# Makes an empty DLL of the size of a module, with the module's imports and exports: the floor of loading it.
#
#   bench/empty_module.sh MODULE EXPORTS.DEF OUT.DLL
set -euo pipefail

module=$1
exports=$2
out=$3
tools=x86_64-w64-mingw32
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The imported names are the rows of three columns in the import tables.
"$tools-objdump" -p "$module" | awk '/^\t[0-9a-f]+\t +[0-9]+ /{print $3}' | sort -u >"$work/imports"
{
    printf '.section .rdata,"dr"\n'
    sed 's/.*/.quad __imp_&/' "$work/imports"
    # shellcheck disable=SC2016  # the dollar signs are the assembler's
    printf '.text\n.globl entry\nentry: movl $1,%%eax\nret\n'
    # What each export answers: this class is not available.
    # shellcheck disable=SC2016
    sed -n 's/^ *\(Dll[A-Za-z]*\).*/.globl \1\n\1: movl $0x80040111,%eax\nret/p' "$exports"
} >"$work/empty.s"

link() { # BYTES of padding
    printf '.section .rdata,"dr"\n.fill %s,1,0xA5\n' "$1" >"$work/padding.s"
    "$tools-gcc" -shared -nostdlib -s -Wl,--entry,entry -Wl,--file-alignment,4096 -Wl,--dynamicbase \
        "$work/empty.s" "$work/padding.s" "$exports" -o "$out" -lgdi32 -luser32 -lshlwapi -loleaut32 -lwintrust \
        -lcrypt32 -ladvapi32 -lshell32 -lole32 -lmsvcrt -lkernel32
}

link 1
link $(($(stat -c %s "$module") - $(stat -c %s "$out")))
