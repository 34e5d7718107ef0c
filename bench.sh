#!/usr/bin/env bash
# Measures the hot paths and prints each figure with its name.
#
#   ./bench.sh
#
# One exchange with a service that answers at once; the namespace folder by its number of locations; a whole
# right-click (create, Initialize, QueryContextMenu, release) on a protected folder, with the development service on
# the other side. Figures of a busy machine are worth little: close other work first.
. "$(dirname "$0")/scripts/lib.sh"
expect_end "$@"

right_clicks=200

"$ORV_ROOT/scripts/build.sh"
bin="$ORV_ROOT/build/$ORV_PRESET/bin"
trap '"$ORV_ROOT/scripts/prefix.sh" down' EXIT
"$ORV_ROOT/scripts/install.sh" driver

step "One exchange"
"$ORV_ROOT/scripts/wine-run.sh" --timeout 120 --driver -- "$bin/bench_exchange.exe"
step "The namespace folder"
"$ORV_ROOT/scripts/wine-run.sh" --timeout 240 --driver -- "$bin/namespace_bench.exe"
step "A right-click on a protected folder"
"$ORV_ROOT/scripts/install.sh" install
wine_environment
mkdir -p "$WINEPREFIX/drive_c/Orvane bench"
run_wine 60 "$bin/orvsvc.exe" protect 'C:\Orvane bench'
run_wine 240 "$bin/shellhost.exe" menu 'C:\Orvane bench' --bench "$right_clicks"
run_wine 60 "$bin/orvsvc.exe" unprotect 'C:\Orvane bench'
"$ORV_ROOT/scripts/install.sh" remove
