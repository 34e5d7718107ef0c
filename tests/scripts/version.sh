#!/usr/bin/env bash
# The version stands in res/version.h and nowhere else; the changes of the version to come stand first in CHANGELOG.md.
#
#   version.sh
. "$(dirname "$0")/../../scripts/lib.sh"
version=$(version_of_tree)
[[ $version =~ ^[0-9]+\.[0-9]+\.[0-9]+$ ]] || die "res/version.h says '$version'"

# copies FOLDER: the lines below it that hold the version as a text or as numbers.
copies() {
    local text=${version//./\\.} numbers=${version//./ *, *}
    (cd "$1" && grep -rInE --exclude-dir=build --exclude-dir=.git --exclude=CHANGELOG.md \
        "(^|[^0-9.])($text|$numbers)($|[^0-9])" .)
}

! copies "$ORV_ROOT" || die "the version is typed a second time; ask ORV_VERSION_… or version_of_tree for it"
latest=$(sed -n 's/^## \([0-9.]*\).*/\1/p' "$ORV_ROOT/CHANGELOG.md" | head -n 1)
[ "$latest" = "$version" ] || die "CHANGELOG.md begins with $latest, not with $version"

# Each of these is found.
planted=$(mktemp -d)
trap 'rm -rf "$planted"' EXIT
for line in "Package-$version.msi" "version=\"$version.0\"" "FILEVERSION ${version//./, }, 0" "$version"; do
    printf '%s\n' "$line" >"$planted/file"
    copies "$planted" >/dev/null || die "'$line' is not found"
done
say "passed: $version stands once"
