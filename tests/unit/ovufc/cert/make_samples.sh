#!/usr/bin/env bash
# Makes the signed and otherwise prepared copies of a library that the tests of the signer check read.
#
#   make_samples.sh LIBRARY SIGNING_DIR OUT_DIR
. "$(dirname "$0")/../../../../scripts/lib.sh"
[ $# = 3 ] || die "LIBRARY SIGNING_DIR OUT_DIR"
library=$1 signing_dir=$2 out=$3
signing="$ORV_ROOT/scripts/signing.sh"

rm -rf "$out"
mkdir -p "$out"

# sample NAME SUBJECT [DAYS]: a copy signed by a signer of that common name.
sample() {
    "$signing" leaf "$signing_dir" "sample_$1" "$2" ${3:+"$3"}
    cp "$library" "$out/$1.dll"
    "$signing" sign-as "$signing_dir" "sample_$1" "$out/$1.dll"
}

sample maker 'Orvane, Inc.'
sample other_case 'oRVANE, iNC.'
sample other_maker 'Another Maker, Inc.'
sample trailing_blank 'Orvane, Inc. '
sample leading_blank ' Orvane, Inc.'
sample longer 'Orvane, Inc.x'
sample shorter 'Orvane, Inc'
sample expired 'Orvane, Inc.' -1

cp "$library" "$out/unsigned.dll"
cp "$library" "$out/self_signed.dll"
"$signing" sign-as "$signing_dir" authority "$out/self_signed.dll"

# One byte of the header's unused text ("This program cannot be run in DOS mode") is changed; the signature
# stays whole.
cp "$out/maker.dll" "$out/tampered.dll"
printf 'X' | dd of="$out/tampered.dll" bs=1 seek=80 conv=notrunc status=none
head -c -512 "$out/maker.dll" >"$out/cut.dll"
printf 'not an image at all\n' >"$out/text.dll"
