#!/usr/bin/env bash
# Whose signature a file carries: a build's is that of its own authority, which makes no release, and what a release
# is refused for.
#
#   release_signer.sh ROOT FOLDER     FOLDER is made anew
set -euo pipefail

root=$1
work=$2
signing=$root/scripts/signing.sh
unset ORV_SIGNING_PKCS12 ORV_SIGNING_PASSWORD_FILE ORV_SIGNING_TIMESTAMP_URL
rm -rf "$work"
mkdir -p "$work"

. "$root/tests/scripts/release_checks.sh"

as_release() { env ORV_SIGNING_PKCS12="$work/$1.p12" ORV_SIGNING_PASSWORD_FILE="$work/password" "${@:2}"; }
signer maker 'Orvane, Inc.'
signer stranger 'Another, Inc.'

# A build is signed by its own authority, whatever the environment names. No release comes of that authority.
as_release maker cmake -G Ninja -S "$root/tests/scripts/signing_sample" -B "$work/tree" \
    -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-x64.cmake" >"$work/log" 2>&1 || fail "$(cat "$work/log")"
as_release maker cmake --build "$work/tree" >"$work/log" 2>&1 || fail "$(cat "$work/log")"
dll=$work/tree/sample.dll
"$signing" check "$work/tree/signing" "$dll" || fail "a build is not signed by its own authority"
fails_with 'set ORV_SIGNING_PKCS12' "$signing" check-signer
pack development "$work/tree/signing/signer.crt" "$work/tree/signing/signer.key" "$work/tree/signing/authority.crt"
fails_with 'of the development authority' as_release development "$signing" check-signer
fails_with 'its signer is not known' as_release maker "$signing" check-release "$dll"

# The maker's signature passes.
as_release maker "$signing" sign '' "$dll"
as_release maker "$signing" check-release "$dll" || fail "a release is refused"
cp "$dll" "$work/good.dll"

# What is looked at: that there is a signature, that it is of this file, whose it is, and where that comes from.
osslsigncode remove-signature -in "$work/good.dll" -out "$work/unsigned.dll" >/dev/null
fails_with 'is not signed' as_release maker "$signing" check-release "$work/unsigned.dll"
cp "$work/good.dll" "$work/changed.dll"
printf 'changed' | dd of="$work/changed.dll" bs=1 seek=64 conv=notrunc 2>/dev/null
fails_with 'was changed since' as_release maker "$signing" check-release "$work/changed.dll"
as_release stranger "$signing" sign '' "$dll"
fails_with "signed by 'Another, Inc.'" as_release stranger "$signing" check-release "$dll"
fails_with 'its signer is not known' as_release maker "$signing" check-release "$dll"
echo "passed"
