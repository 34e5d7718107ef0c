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

. "$root/tests/scripts/release_checks.sh"

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

signer maker 'Orvane, Inc.'
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
