#!/usr/bin/env bash
# The bill of materials is true: it can be read, names the files that ship with their sums, and the packages as they are
# installed on the machine that built them.
#
#   bill.sh BILL FOLDER     FOLDER holds what is in the package, and nothing else
# shellcheck disable=SC2016 # what stands in single quotes is Perl
set -euo pipefail
bill=$1
folder=$2
failures=0

# expect_lines TITLE FOUND WANTED
expect_lines() {
    local difference
    if [ -n "$3" ] && difference=$(diff <(printf '%s\n' "$3") <(printf '%s\n' "$2")); then
        return
    fi
    printf 'FAILED: %s ("<" should, ">" should not)\n%s\n' "$1" "${difference:-nothing to compare with}" >&2
    failures=$((failures + 1))
}

# read_bill PERL: what the piece of Perl prints of the bill, sorted.
read_bill() {
    perl -MJSON::PP -0777 -ne '$bill = decode_json $_;
        sub packages { grep { $_->{externalRefs} } @{$bill->{packages}} } '"$1" "$bill" | sort
}

expect_lines 'the files' \
    "$(read_bill 'for $f (@{$bill->{files}}) { ($s) = grep { $_->{algorithm} eq "SHA256" } @{$f->{checksums}};
        print "$s->{checksumValue}  $f->{fileName}\n" }')" \
    "$(cd "$folder" && find . -type f -print0 | xargs -0 sha256sum | sort)"
mapfile -t packages < <(read_bill 'print "$_->{name}\n" for packages')
expect_lines 'the packages' "$(read_bill 'print "$_->{name} $_->{versionInfo}\n" for packages')" \
    "$(dpkg-query -W -f '${Package} ${Version}\n' "${packages[@]}" | sort)"
# The runtime of the compiler is in every library, one JSON library in the module and one in the dialogs.
expect_lines 'the packages that are always linked' \
    "$(printf '%s\n' "${packages[@]}" | grep -E '^(nlohmann-json3-dev|rapidjson-dev|mingw-w64-(x86-64|i686)-dev)$')" \
    'mingw-w64-i686-dev
mingw-w64-x86-64-dev
nlohmann-json3-dev
rapidjson-dev'
expect_lines 'what relations name' \
    "$(read_bill 'print "$_->{spdxElementId}\n$_->{relatedSpdxElement}\n" for @{$bill->{relationships}}' | uniq)" \
    "$(read_bill 'print "$_->{SPDXID}\n" for $bill, @{$bill->{packages}}, @{$bill->{files}}')"
[ "$failures" = 0 ] || exit 1
echo "passed: the bill of materials"
