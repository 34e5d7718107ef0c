#!/usr/bin/env bash
# Whose signature a build carries: a tree that was configured for development takes a release's signer when one is
# named, gives it up again, and never makes a release with the development authority.
#
#   release_signer.sh ROOT FOLDER     FOLDER is made anew
set -euo pipefail

root=$1
work=$2
signing=$root/scripts/signing.sh
unset ORV_SIGNING_PKCS12 ORV_SIGNING_PASSWORD_FILE ORV_SIGNING_TIMESTAMP_URL
rm -rf "$work"
mkdir -p "$work"

fail() {
    printf 'FAILED: %s\n' "$*" >&2
    exit 1
}

# fails_with TEXT COMMAND...
fails_with() {
    local text=$1 output
    shift
    ! output=$("$@" 2>&1) || fail "'$*' passes"
    # CMake breaks lines where the length of a path lets it.
    [[ $(tr -s '[:space:]' ' ' <<<"$output") == *"$text"* ]] || fail "'$*' does not say '$text': $output"
}

# certificate NAME SUBJECT: a signer that is not of the development authority, as a release's file with a password.
certificate() {
    openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj "/CN=Authority of $1" -keyout "$work/$1.ca.key" \
        -out "$work/$1.ca.crt" 2>/dev/null
    openssl req -newkey rsa:2048 -nodes -subj "/CN=$2" -keyout "$work/$1.key" -out "$work/$1.csr" 2>/dev/null
    openssl x509 -req -in "$work/$1.csr" -CA "$work/$1.ca.crt" -CAkey "$work/$1.ca.key" -CAcreateserial -days 2 \
        -extfile <(printf 'extendedKeyUsage=codeSigning\nkeyUsage=critical,digitalSignature\n') \
        -out "$work/$1.crt" 2>/dev/null
    pack "$1" "$work/$1.crt" "$work/$1.key" "$work/$1.ca.crt"
}
pack() {
    printf 'a password' >"$work/password"
    openssl pkcs12 -export -in "$2" -inkey "$3" -certfile "$4" -passout "file:$work/password" -out "$work/$1.p12"
}

configure() { cmake -G Ninja -S "$root/tests/scripts/signing_sample" -B "$work/tree" \
    -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-x64.cmake" "$@"; }
build() {
    { configure "$@" && cmake --build "$work/tree"; } >"$work/log" 2>&1 || fail "$(cat "$work/log")"
}
dll=$work/tree/sample.dll
issuer() { osslsigncode verify -CAfile /dev/null "$dll" 2>&1 | sed -n 's/.*Issuer *: *//p' | head -n 1; }
as_release() { env ORV_SIGNING_PKCS12="$work/$1.p12" ORV_SIGNING_PASSWORD_FILE="$work/password" "${@:2}"; }

# Without a signer the development authority signs, and no release comes of it.
build
[[ $(issuer) == *development* ]] || fail "development is signed by '$(issuer)'"
"$signing" check "$work/tree/signing" "$dll" || fail "a signed file is refused"
fails_with 'set ORV_SIGNING_PKCS12' configure -DORV_RELEASE=ON
configure -DORV_RELEASE=OFF >/dev/null

# Named later, the release's signer is taken by the tree that was configured without.
certificate maker 'Orvane, Inc.'
export ORV_SIGNING_PKCS12=$work/maker.p12 ORV_SIGNING_PASSWORD_FILE=$work/password
build -DORV_RELEASE=ON
[[ $(issuer) == *'Authority of maker'* ]] || fail "a release is signed by '$(issuer)'"
"$signing" check-release "$dll" || fail "a release is refused"
cp "$dll" "$work/good.dll"

# The development authority's own certificate as a file is no release's signer.
pack development "$work/tree/signing/signer.crt" "$work/tree/signing/signer.key" "$work/tree/signing/authority.crt"
fails_with 'of the development authority' as_release development "$signing" check-signer
ORV_SIGNING_PKCS12=$work/development.p12 fails_with 'of the development authority' configure -DORV_RELEASE=ON
ORV_SIGNING_PKCS12=$work/none.p12 fails_with 'names no file' configure

# What is looked at: that there is a signature, that it is of this file, whose it is, and where that comes from.
osslsigncode remove-signature -in "$work/good.dll" -out "$work/unsigned.dll" >/dev/null
fails_with 'is not signed' "$signing" check-release "$work/unsigned.dll"
cp "$work/good.dll" "$work/changed.dll"
printf 'changed' | dd of="$work/changed.dll" bs=1 seek=64 conv=notrunc 2>/dev/null
fails_with 'was changed since' "$signing" check-release "$work/changed.dll"
certificate stranger 'Another, Inc.'
ORV_SIGNING_PKCS12=$work/stranger.p12 build
fails_with "signed by 'Another, Inc.'" as_release stranger "$signing" check-release "$dll"
fails_with 'its signer is not known' "$signing" check-release "$dll"

# And given up again.
unset ORV_SIGNING_PKCS12 ORV_SIGNING_PASSWORD_FILE
build -DORV_RELEASE=OFF
[[ $(issuer) == *development* ]] || fail "the release's signer stays: '$(issuer)'"
ORV_SIGNING_PKCS12=$work/maker.p12 ORV_SIGNING_PASSWORD_FILE=$work/password fails_with '' "$signing" check-release "$dll"
echo "passed"
