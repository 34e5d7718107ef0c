#!/usr/bin/env bash
# The development authority's certificate among the trusted roots of a build's Wine prefix.
#
#   scripts/certificate.sh install   so that what this build has signed is valid there
#   scripts/certificate.sh remove
#
# ORV_PRESET names the build (x64-release). Installing again costs nothing.
. "$(dirname "$0")/lib.sh"

build="$ORV_ROOT/build/$ORV_PRESET"
certificate="$build/signing/authority.der"
installed="$(prefix_dir)/.authority.der"

change() {
    "$ORV_ROOT/scripts/prefix.sh" up
    wine_environment
    run_wine 60 "$build/bin/orvcert.exe" "$1" "$(run_wine 20 winepath -w "$2" | tr -d '\r')" ||
        die "the certificate could not be changed"
}

remove() {
    [ -f "$installed" ] || return 0
    change remove "$installed"
    rm -f "$installed"
}

install() {
    cmp -s "$certificate" "$installed" && return
    if [ ! -f "$certificate" ] || [ ! -f "$build/bin/orvcert.exe" ]; then
        die "$ORV_PRESET has not been built; run ORV_PRESET=$ORV_PRESET scripts/build.sh"
    fi
    remove
    change install "$certificate"
    cp "$certificate" "$installed"
}

case "${1:-}" in
install) install ;;
remove) remove ;;
*) misused "say install or remove, not '${1:-}'" ;;
esac
