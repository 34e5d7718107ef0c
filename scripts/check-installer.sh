#!/usr/bin/env bash
# Installs, repairs, upgrades and removes the product by Wine's installer, each time on a new machine, and compares
# files and registry before and after. The package is that of `scripts/release.sh --development`, made anew.
#
#   scripts/check-installer.sh [CASE...]     all cases of tests/installer/cases.sh unless some are named
. "$(dirname "$0")/lib.sh"
cases="$ORV_ROOT/tests/installer"
mapfile -t all_cases < <(sed -n 's/^\([a-z_]*\)() {$/\1/p' "$cases/cases.sh")
for word in "$@"; do
    [[ " ${all_cases[*]} " == *" $word "* ]] || misused "there is no case '$word'; there are: ${all_cases[*]}"
done

work="$ORV_ROOT/build/installer"
template="$work/template"
release="$ORV_ROOT/build/release"
mkdir -p "$work"

build_users() {
    step "Building what uses the module"
    local preset
    for preset in x64-release x86-release; do
        cmake --build "$ORV_ROOT/build/$preset" --target module_user >"$work/build.log" 2>&1 ||
            { tail -n 20 "$work/build.log" >&2 && die "module_user could not be built for $preset"; }
    done
    cmake --build "$ORV_ROOT/build/x64-release" --target shellhost >"$work/build.log" 2>&1 ||
        { tail -n 20 "$work/build.log" >&2 && die "shellhost could not be built"; }
}

# variant NAME VERSION: a package of the files in $work/NAME.
variant() { SOURCE_DATE_EPOCH=$(date +%s) "$ORV_ROOT/installer/make_msi.sh" "$work/$1" "$2" "$work/$1.msi"; }

# failing_variant NAME CONDITION: the current package with one more action, behind all the others, which fails: it is
# told to register no file.
failing_variant() {
    cp "$current" "$work/$1.msi"
    msibuild "$work/$1.msi" -q "INSERT INTO \`CustomAction\` (\`Action\`, \`Type\`, \`Source\`, \`Target\`) VALUES ('Fail', 3073, 'orvsetup', 'Register')"
    msibuild "$work/$1.msi" -q "INSERT INTO \`InstallExecuteSequence\` (\`Action\`, \`Condition\`, \`Sequence\`) VALUES ('Fail', '$2', 6450)"
}

# The other packages are made of what is in the current one.
make_packages() {
    step "Making the packages of the cases"
    rm -rf "$work/current" "$work/previous" "$work/another" "$work/unpacked"
    mkdir -p "$work/current"/{x64,x86}
    msiextract -C "$work/unpacked" "$current" >/dev/null
    # The installer's own folders have no name there.
    cp "$work/unpacked/Orvane/Vaultkeep"/*.dll "$work/current/x64/"
    cp "$work/unpacked/Orvane/Vaultkeep/NOTICES.txt" "$work/current/"
    cp "$work/unpacked"/*.dll "$work/current/x86/"
    msiinfo extract "$current" Binary.orvsetup >"$work/current/orvsetup.dll"
    cp -r "$work/current" "$work/previous"
    # In place of building anew: the numbers behind the mark of the version record become 0.9.0.0.
    local file
    for file in "$work"/previous/*/*.dll; do
        perl -0777 -pi -e 's/(\xbd\x04\xef\xfe\x00\x00\x01\x00).{8}/$1\x09\x00\x00\x00\x00\x00\x00\x00/s or die "no version record in $ARGV\n"' "$file"
    done
    variant previous "$previous_version"
    cp -r "$work/current" "$work/another"
    echo "Another build." >>"$work/another/NOTICES.txt"
    variant another "$version"
    failing_variant failing 'NOT REMOVE'
    failing_variant failing_removal 'REMOVE'
}

make_template() {
    [ ! -f "$template/.made" ] || return 0
    ORV_PREFIX="$template" "$ORV_ROOT/scripts/prefix.sh" up
    ORV_PREFIX="$template" "$ORV_ROOT/scripts/prefix.sh" down
}

"$ORV_ROOT/scripts/wine32.sh"
"$cases/signed_release.sh" "$ORV_ROOT" "$work/signed"
"$ORV_ROOT/scripts/release.sh" --development
# What the cases know.
current=$(ls "$release"/OrvaneVaultkeep-*-development.msi)
version=$(version_of_tree)
previous_version=0.9.0
export previous="$work/previous.msi" another="$work/another.msi"
export failing="$work/failing.msi" failing_removal="$work/failing_removal.msi"
"$cases/tables.sh" "$current"
build_users
make_packages
"$cases/bill.sh" "$release"/*.spdx.json "$work/current"

# Programs of both widths run here, which the presets with 32-bit libraries alone can.
export ORV_PRESET=x86-release ORV_PREFIX="$work/prefix"
failures=0
# shellcheck source=../tests/installer/machine.sh
. "$cases/machine.sh"
# shellcheck source=../tests/installer/cases.sh
. "$cases/cases.sh"
product=$(product_of "$current")
export product
trap old_machine EXIT
make_template
[ $# -gt 0 ] || set -- "${all_cases[@]}"
for one in "$@"; do
    step "[$one]"
    start_s=$SECONDS
    new_machine
    "$one"
    say "    $((SECONDS - start_s)) s"
done
[ "$failures" = 0 ] || die "$failures expectations were not met"
step "All $# cases passed"
