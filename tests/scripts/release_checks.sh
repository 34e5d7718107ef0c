# What the tests of signed releases share; to be sourced, with $work set to a folder of the test's own.
# shellcheck shell=bash
: "${work:?}"

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

# certificate NAME SUBJECT USAGE: a key and its certificate by an authority of the same name, not the development one.
certificate() {
    openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj "/CN=Authority of $1" -keyout "$work/$1.ca.key" \
        -out "$work/$1.ca.crt" 2>/dev/null
    openssl req -newkey rsa:2048 -nodes -subj "/CN=$2" -keyout "$work/$1.key" -out "$work/$1.csr" 2>/dev/null
    openssl x509 -req -in "$work/$1.csr" -CA "$work/$1.ca.crt" -CAkey "$work/$1.ca.key" -CAcreateserial -days 2 \
        -extfile <(printf 'extendedKeyUsage=critical,%s\nkeyUsage=critical,digitalSignature\n' "$3") \
        -out "$work/$1.crt" 2>/dev/null
}

# pack NAME CERTIFICATE KEY AUTHORITY: NAME.p12, as a release's signer is given, and its password file.
pack() {
    printf 'a password' >"$work/password"
    openssl pkcs12 -export -in "$2" -inkey "$3" -certfile "$4" -passout "file:$work/password" -out "$work/$1.p12"
}

# signer NAME SUBJECT: a certificate for signing code, packed.
signer() {
    certificate "$1" "$2" codeSigning
    pack "$1" "$work/$1.crt" "$work/$1.key" "$work/$1.ca.crt"
}
