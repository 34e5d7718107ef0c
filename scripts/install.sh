#!/usr/bin/env bash
# Puts a build's product into its Wine prefix, or takes it out again.
#
#   scripts/install.sh install   certificate, driver, service and the registered module
#   scripts/install.sh remove    the same, backwards
#   scripts/install.sh driver    certificate and driver only: what the tests build on
#
# ORV_PRESET names the build (x64-release).
. "$(dirname "$0")/lib.sh"

bin="$ORV_ROOT/build/$ORV_PRESET/bin"

register_module() {
    wine_environment
    run_wine 60 regsvr32 "$@" /s "$(run_wine 20 winepath -w "$bin/orvshellext.dll" | tr -d '\r')" ||
        die "regsvr32 $* failed"
}

install_driver() {
    "$ORV_ROOT/scripts/prefix.sh" up
    "$ORV_ROOT/scripts/certificate.sh" install
    "$ORV_ROOT/scripts/driver.sh" install
    "$ORV_ROOT/scripts/driver.sh" start
}

case "${1:-}" in
driver) install_driver ;;
install)
    install_driver
    "$ORV_ROOT/scripts/service.sh" install
    "$ORV_ROOT/scripts/service.sh" start
    register_module
    ;;
remove)
    "$ORV_ROOT/scripts/prefix.sh" up
    register_module /u
    "$ORV_ROOT/scripts/service.sh" remove
    "$ORV_ROOT/scripts/driver.sh" remove
    "$ORV_ROOT/scripts/certificate.sh" remove
    ;;
*) misused "say install, remove or driver, not '${1:-}'" ;;
esac
