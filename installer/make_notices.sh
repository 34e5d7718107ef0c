#!/usr/bin/env bash
# Prints the notices of the software of others that is in the shipped libraries.
#
#   installer/make_notices.sh LINKED
#
# LINKED holds the output of installer/linked_packages.sh. The texts are those that Debian keeps with each package.
. "$(dirname "$0")/../scripts/lib.sh"
[ $# = 1 ] || misused "name the list of packages, not '$*'"

say "Orvane Vaultkeep Shell Extension" "Copyright Orvane, Inc." "" \
    "Its files hold parts of the software below, each under its own terms." ""
sums=
while read -r package version licence; do
    text=/usr/share/doc/$package/copyright
    [ -f "$text" ] || die "$package has no copyright file"
    sum=$(sha256sum <"$text" | cut -d' ' -f1)
    say "==== $package $version ($licence)" ""
    # Packages of one source share a text.
    if [[ $sums != *$sum* ]]; then
        cat "$text"
    else
        say "The text is that of an earlier package of the same source."
    fi
    say ""
    sums+=" $sum"
done <"$1"
