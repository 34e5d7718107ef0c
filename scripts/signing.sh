#!/usr/bin/env bash
# Signs Windows images, for development with a certificate authority of this build alone.
#
#   scripts/signing.sh authority DIR     makes the authority in DIR, unless it is there
#   scripts/signing.sh leaf DIR NAME SUBJECT [DAYS]
#                                        makes NAME.crt and NAME.key in DIR: a signer whose common name is
#                                        SUBJECT; with negative DAYS one that has expired
#   scripts/signing.sh sign DIR FILE     signs FILE in place
#   scripts/signing.sh sign-as DIR NAME FILE
#                                        the same with the signer NAME of DIR
#   scripts/signing.sh check DIR FILE... fails unless each FILE is signed by the maker, whole, and the signer goes
#                                        back to the authority in DIR, or to the chain of the release's certificate
#   scripts/signing.sh check-release FILE...
#                                        the same for a release: what the development authority has signed fails
#   scripts/signing.sh check-signer      fails unless the environment names a signer that is good for a release
#
# DIR holds authority.{key,crt,der} and signer.{key,crt}. The keys stay on this machine: they are made here,
# readable by their owner only, and DIR lies in the build folder, which is never committed.
#
# A release signs with the certificate of the maker: ORV_SIGNING_PKCS12 names the file that holds it and its chain,
# ORV_SIGNING_PASSWORD_FILE a file with its password, ORV_SIGNING_TIMESTAMP_URL a time-stamping service. When that is named, a file without
# a valid time stamp fails the checks; ORV_SIGNING_TIMESTAMP_CA names the file of the authorities that stamps may go back
# to, in place of this machine's.
. "$(dirname "$0")/lib.sh"

maker='Orvane, Inc.'
# With this the name of every development authority begins.
development='Orvane Vaultkeep development'
long_days=3650

quietly() {
    local output
    output=$("$@" 2>&1) || die "$1 failed: $output"
}

make_leaf() {
    local dir=$1 name=$2 subject=$3 days=${4:-$long_days}
    local dates=(-days "$days")
    if [ "$days" -lt 0 ]; then
        dates=(-startdate 20200101000000Z -enddate 20200201000000Z)
    fi
    local work
    work=$(mktemp -d "$dir/making.XXXXXX")
    cat >"$work/leaf.cnf" <<EOF
[ca]
default_ca = authority
[authority]
database = $work/index
rand_serial = yes
new_certs_dir = $work
default_md = sha256
policy = anything
x509_extensions = leaf
[anything]
commonName = supplied
[leaf]
basicConstraints = critical,CA:FALSE
keyUsage = critical,digitalSignature
extendedKeyUsage = codeSigning
subjectKeyIdentifier = hash
authorityKeyIdentifier = keyid
EOF
    : >"$work/index"
    quietly openssl req -new -newkey rsa:2048 -nodes -sha256 -utf8 -subj "/CN=$subject" \
        -keyout "$work/leaf.key" -out "$work/leaf.csr"
    quietly openssl ca -batch -notext -utf8 -config "$work/leaf.cnf" "${dates[@]}" -in "$work/leaf.csr" \
        -cert "$dir/authority.crt" -keyfile "$dir/authority.key" -out "$work/leaf.crt"
    mv -f "$work/leaf.key" "$dir/$name.key"
    mv -f "$work/leaf.crt" "$dir/$name.crt"
    rm -rf "$work"
}

# The signer's certificate comes last: with it the authority is complete.
make_authority() {
    local dir=$1
    mkdir -p "$dir"
    exec 9>"$dir/.lock"
    flock -w 120 9 || die "another run has been making $dir for two minutes"
    [ ! -f "$dir/signer.crt" ] || return 0
    quietly openssl req -x509 -newkey rsa:3072 -nodes -sha256 -days "$long_days" \
        -subj "/CN=$development $(date +%Y-%m-%dT%H:%M:%S) on $(uname -n | cut -c1-20)" \
        -addext 'basicConstraints=critical,CA:TRUE' -addext 'keyUsage=critical,keyCertSign,cRLSign' \
        -keyout "$dir/authority.key" -out "$dir/authority.crt"
    quietly openssl x509 -in "$dir/authority.crt" -outform DER -out "$dir/authority.der"
    make_leaf "$dir" signer "$maker"
}

# The file is replaced in one step, so that nobody finds it half signed.
sign_with() {
    local file=$1
    shift
    local signed="$file.signed"
    rm -f "$signed"
    quietly osslsigncode sign "$@" -h sha256 -n 'Orvane Vaultkeep' -in "$file" -out "$signed"
    chmod --reference="$file" "$signed"
    mv -f "$signed" "$file"
}

sign() {
    local dir=$1 file=$2
    if [ -z "${ORV_SIGNING_PKCS12:-}" ]; then
        sign_with "$file" -certs "$dir/signer.crt" -key "$dir/signer.key"
        return
    fi
    local options=(-pkcs12 "$ORV_SIGNING_PKCS12")
    if [ -n "${ORV_SIGNING_PASSWORD_FILE:-}" ]; then
        options+=(-readpass "$ORV_SIGNING_PASSWORD_FILE")
    fi
    if [ -n "${ORV_SIGNING_TIMESTAMP_URL:-}" ]; then
        options+=(-ts "$ORV_SIGNING_TIMESTAMP_URL")
    fi
    sign_with "$file" "${options[@]}"
}

release_certificates() {
    local password=pass:
    if [ -n "${ORV_SIGNING_PASSWORD_FILE:-}" ]; then
        password=file:$ORV_SIGNING_PASSWORD_FILE
    fi
    openssl pkcs12 -in "$ORV_SIGNING_PKCS12" -passin "$password" -nokeys "$@" 2>/dev/null ||
        die "$ORV_SIGNING_PKCS12 cannot be read; is ORV_SIGNING_PASSWORD_FILE right?"
}

check_signer() {
    [ -n "${ORV_SIGNING_PKCS12:-}" ] || die "a release needs the maker's certificate: set ORV_SIGNING_PKCS12"
    local names
    names=$(release_certificates -clcerts | openssl x509 -noout -subject -issuer -nameopt utf8,sep_comma_plus)
    [[ $names != *"$development"* ]] || die "$ORV_SIGNING_PKCS12 is of the development authority, no signer for a release"
}

# check_file ANCHORS FILE
check_file() {
    local report signer
    report=$(osslsigncode verify -CAfile "$1" -TSA-CAfile "$time_anchors" "$2" 2>&1) ||
        die "$2 is not signed, was changed since, or its signer is not known: $(grep -iE 'mismatch|no signature|error' <<<"$report" | head -n 2)"
    signer=$(sed -n "/^Signer's certificate/,\$s/.*Subject: .*\/CN=\([^/]*\).*/\1/p" <<<"$report" | head -n 1)
    [ "${signer,,}" = "${maker,,}" ] || die "$2 is signed by '$signer', not by '$maker'"
    # A time stamp that does not hold is no failure of osslsigncode's.
    if [ -n "${ORV_SIGNING_PKCS12:-}" ] && [ -n "${ORV_SIGNING_TIMESTAMP_URL:-}" ] &&
        [[ $report != *'Timestamp Server Signature verification: ok'* ]]; then
        die "$2 has no valid time stamp"
    fi
    if [ "$release_only" = yes ] && [[ $report == *"$development"* ]]; then
        die "$2 is signed with the development authority"
    fi
}

# check_files DIR FILE...; DIR is not looked at when a release's signer is named.
check_files() {
    local dir=$1 file
    shift
    anchors=$(mktemp)
    trap 'rm -f "$anchors"' EXIT
    if [ -n "${ORV_SIGNING_PKCS12:-}" ]; then
        release_certificates -cacerts >"$anchors"
        # A machine without the public authorities still has those of the certificate's own file.
        cat /etc/ssl/certs/ca-certificates.crt >>"$anchors" 2>/dev/null || true
    else
        cat "$dir/authority.crt" >"$anchors"
    fi
    for file in "$@"; do
        check_file "$anchors" "$file"
        say "$file: signed by $maker"
    done
}

umask 077
time_anchors=${ORV_SIGNING_TIMESTAMP_CA:-/etc/ssl/certs/ca-certificates.crt}
release_only=no
case "${1:-} $#" in
check\ [3-9] | check\ [1-9][0-9]) check_files "${@:2}" ;;
check-release\ [2-9] | check-release\ [1-9][0-9])
    release_only=yes
    check_signer
    check_files '' "${@:2}"
    ;;
'check-signer 1') check_signer ;;
'authority 2') make_authority "$2" ;;
'leaf 4' | 'leaf 5') make_leaf "${@:2}" ;;
'sign 3') sign "$2" "$3" ;;
'sign-as 4') sign_with "$4" -certs "$2/$3.crt" -key "$2/$3.key" ;;
*) misused "say authority, leaf, sign, sign-as or one of the checks with their words, not '$*'" ;;
esac
