#!/usr/bin/env bash
# Makes the installer's package of the files in a folder.
#
#   installer/make_msi.sh FOLDER VERSION MSI
#
# FOLDER holds x64/ and x86/ with the three libraries each, orvsetup.dll and NOTICES.txt; VERSION has three parts. The
# package is a function of these alone, and of SOURCE_DATE_EPOCH, which has to be set: its ids are made of what is in
# it, its times are that one.
. "$(dirname "$0")/../scripts/lib.sh"
[ $# = 3 ] || misused "name a folder, a version and a package, not '$*'"
[ -n "${SOURCE_DATE_EPOCH:-}" ] || die "SOURCE_DATE_EPOCH is not set"
folder=$(realpath "$1")
version=$2
package=$(realpath -m "$3")
source="$ORV_ROOT/installer/vaultkeep.wxs"

# id_of TEXT...: an id that the texts alone decide (a UUID of version 5).
id_of() {
    local sum
    sum=$(printf '%s\n' "$@" | sha1sum)
    printf '%s' "${sum:0:8}-${sum:8:4}-5${sum:13:3}-a${sum:17:3}-${sum:20:12}" | tr '[:lower:]' '[:upper:]'
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -r "$folder/." "$work/"
cd "$work"
find . -exec touch -d "@$SOURCE_DATE_EPOCH" {} +
# A product is one version; a package is one set of bytes.
product=$(id_of "$(sed -n 's/.*UpgradeCode="\([^"]*\)".*/\1/p' "$source")" "$version")
contents=$(find . -type f -print0 | sort -z | xargs -0 sha256sum)
package_id=$(id_of "$contents" "$version" "$(cat "$source" "$ORV_ROOT/installer/tables.sql")" "$SOURCE_DATE_EPOCH")

# Times in a cabinet are local ones.
export TZ=UTC
if ! wixl -a x64 -D "Version=$version" -D "ProductCode=$product" -o "$work/package.msi" "$source" >"$work/log" 2>&1 ||
    [ -s "$work/log" ]; then
    cat "$work/log" >&2
    die "wixl does not understand $source"
fi
while IFS= read -r query; do
    msibuild package.msi -q "${query//@VERSION@/$version.0}" || die "the tables do not take: $query"
done <"$ORV_ROOT/installer/tables.sql"
saved=$(date -u -d "@$SOURCE_DATE_EPOCH" '+%Y/%m/%d %H:%M:%S')
msiinfo export package.msi _SummaryInformation |
    sed -E "s|^(9\t)[^\r]*|\1{$package_id}|; s|^(1[23]\t)[^\r]*|\1$saved|" >summary.idt
msibuild package.msi -i summary.idt || die "the package's summary cannot be written"
mv -f package.msi "$package"
