#!/usr/bin/env bash
# A release for customers: refused without the maker's certificate, made with one of that name, each file and the package
# signed and stamped by a time-stamping service on the loopback address.
#
#   signed_release.sh ROOT FOLDER     FOLDER is made anew
set -euo pipefail
root=$1
work=$2
here=$(cd "$(dirname "$0")" && pwd)
unset ORV_SIGNING_PKCS12 ORV_SIGNING_PASSWORD_FILE ORV_SIGNING_TIMESTAMP_URL ORV_SIGNING_TIMESTAMP_CA
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
    [[ $output == *"$text"* ]] || fail "'$*' does not say '$text': $output"
}

# certificate NAME SUBJECT USAGE: a key and its certificate by an authority of the same name.
certificate() {
    openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj "/CN=Authority of $1" -keyout "$work/$1.ca.key" \
        -out "$work/$1.ca.crt" 2>/dev/null
    openssl req -newkey rsa:2048 -nodes -subj "/CN=$2" -keyout "$work/$1.key" -out "$work/$1.csr" 2>/dev/null
    openssl x509 -req -in "$work/$1.csr" -CA "$work/$1.ca.crt" -CAkey "$work/$1.ca.key" -CAcreateserial -days 2 \
        -extfile <(printf 'extendedKeyUsage=critical,%s\nkeyUsage=critical,digitalSignature\n' "$3") \
        -out "$work/$1.crt" 2>/dev/null
}

start_time_service() {
    certificate time 'Time stamps' timeStamping
    cat >"$work/time.cnf" <<END
[tsa]
default_tsa = service
[service]
serial = $work/serial
signer_cert = $work/time.crt
signer_key = $work/time.key
certs = $work/time.ca.crt
default_policy = 1.2.3.4
digests = sha256
signer_digest = sha256
ess_cert_id_alg = sha256
END
    echo 01 >"$work/serial"
    perl "$here/time_stamp_service.pl" "$work/time.cnf" "$work" >"$work/time.log" 2>&1 &
    service=$!
    trap 'kill "$service" 2>/dev/null || true' EXIT
    local waited=0
    until [ -f "$work/port" ]; do
        sleep 0.1
        waited=$((waited + 1))
        [ "$waited" -lt 100 ] || fail "the time-stamping service did not start"
    done
}

fails_with 'set ORV_SIGNING_PKCS12' "$root/scripts/release.sh"
fails_with 'exclude each other' "$root/scripts/release.sh" --unsigned --development

certificate maker 'Orvane, Inc.' codeSigning
openssl pkcs12 -export -in "$work/maker.crt" -inkey "$work/maker.key" -certfile "$work/maker.ca.crt" \
    -passout pass:secret -out "$work/maker.p12"
printf secret >"$work/password"
export ORV_SIGNING_PKCS12=$work/maker.p12 ORV_SIGNING_PASSWORD_FILE=$work/password
start_time_service
ORV_SIGNING_TIMESTAMP_URL=http://127.0.0.1:$(cat "$work/port")
export ORV_SIGNING_TIMESTAMP_URL ORV_SIGNING_TIMESTAMP_CA=$work/time.ca.crt
"$root/scripts/release.sh" --no-kit >"$work/release.log" 2>&1 || fail "the release is not made: $(tail -n 20 "$work/release.log")"
[ "$(grep -c 'signed by Orvane, Inc.' "$work/release.log")" = 8 ] || fail "not every file was checked: $(cat "$work/release.log")"
cp "$root"/build/release/OrvaneVaultkeep-*.msi "$work/"
msi=$(ls "$work"/*.msi)
[[ $msi =~ /OrvaneVaultkeep-[0-9.]+\.msi$ ]] || fail "the package is named $msi"
(cd "$root/build/release" && sha256sum --quiet -c SHA256SUMS) || fail "the sums are wrong"

# A stamp of an authority that is not trusted, none at all, a service that does not answer.
ORV_SIGNING_TIMESTAMP_CA=$work/maker.ca.crt fails_with 'no valid time stamp' "$root/scripts/signing.sh" check-release "$msi"
ORV_SIGNING_TIMESTAMP_URL='' "$root/scripts/signing.sh" sign '' "$msi"
fails_with 'no valid time stamp' "$root/scripts/signing.sh" check-release "$msi"
kill "$service"
# Its result is that of the signal above.
wait "$service" 2>/dev/null || true
fails_with 'osslsigncode failed' "$root/scripts/signing.sh" sign '' "$msi"
echo "passed: a signed release"
