#!/usr/bin/env bash
# Prints the bill of materials (SPDX 2.3, JSON): the files that ship, and the packages whose code is in them.
#
#   installer/make_bill.sh LINKED VERSION FOLDER
#
# LINKED holds the output of installer/linked_packages.sh; FOLDER holds the files. SOURCE_DATE_EPOCH has to be set.
. "$(dirname "$0")/../scripts/lib.sh"
[ $# = 3 ] || misused "name a list of packages, a version and a folder, not '$*'"
linked=$1
version=$2
folder=$3
product=SPDXRef-Orvane-Vaultkeep

# The names of files and packages hold no character that JSON or SPDX would want escaped, but for these two.
id_of() { printf 'SPDXRef-%s-%s' "$1" "$(tr '/+_' '...' <<<"$2")"; }

files=()
packages=()
relations=("{\"spdxElementId\": \"SPDXRef-DOCUMENT\", \"relationshipType\": \"DESCRIBES\", \"relatedSpdxElement\": \"$product\"}")
relate() { relations+=("{\"spdxElementId\": \"$1\", \"relationshipType\": \"$2\", \"relatedSpdxElement\": \"$3\"}"); }

while IFS= read -r file; do
    id=$(id_of File "$file")
    files+=("{\"SPDXID\": \"$id\", \"fileName\": \"./$file\", \"copyrightText\": \"NOASSERTION\", \"licenseConcluded\": \"NOASSERTION\",
     \"checksums\": [{\"algorithm\": \"SHA1\", \"checksumValue\": \"$(sha1sum <"$folder/$file" | cut -d' ' -f1)\"},
                   {\"algorithm\": \"SHA256\", \"checksumValue\": \"$(sha256sum <"$folder/$file" | cut -d' ' -f1)\"}]}")
    relate "$product" CONTAINS "$id"
done < <(cd "$folder" && find . -type f -printf '%P\n' | sort)

while read -r package package_version licence; do
    id=$(id_of Package "$package")
    packages+=("{\"SPDXID\": \"$id\", \"name\": \"$package\", \"versionInfo\": \"$package_version\", \"supplier\": \"Organization: Debian\",
     \"downloadLocation\": \"NOASSERTION\", \"filesAnalyzed\": false, \"copyrightText\": \"NOASSERTION\",
     \"licenseConcluded\": \"$licence\", \"licenseDeclared\": \"$licence\",
     \"externalRefs\": [{\"referenceCategory\": \"PACKAGE-MANAGER\", \"referenceType\": \"purl\",
                       \"referenceLocator\": \"pkg:deb/debian/$package@${package_version//+/%2B}\"}]}")
    relate "$product" STATIC_LINK "$id"
done <"$linked"

joined() {
    local separator=
    for one in "$@"; do
        printf '%s\n    %s' "$separator" "$one"
        separator=,
    done
}

sums=$(sha1sum <<<"${files[*]} ${packages[*]}")
cat <<EOF
{
  "spdxVersion": "SPDX-2.3",
  "dataLicense": "CC0-1.0",
  "SPDXID": "SPDXRef-DOCUMENT",
  "name": "Orvane Vaultkeep Shell Extension $version",
  "documentNamespace": "urn:orvane:vaultkeep:$version:${sums%% *}",
  "creationInfo": {
    "created": "$(date -u -d "@$SOURCE_DATE_EPOCH" +%Y-%m-%dT%H:%M:%SZ)",
    "creators": ["Organization: Orvane, Inc.", "Tool: scripts/release.sh"]
  },
  "hasExtractedLicensingInfos": [
    {"licenseId": "LicenseRef-mingw-w64-runtime", "extractedText": "See NOTICES.txt, which holds the text as a whole."}
  ],
  "packages": [
    {"SPDXID": "$product", "name": "Orvane Vaultkeep Shell Extension", "versionInfo": "$version", "supplier": "Organization: Orvane, Inc.",
     "downloadLocation": "NOASSERTION", "filesAnalyzed": false, "licenseConcluded": "NOASSERTION",
     "licenseDeclared": "NOASSERTION", "copyrightText": "Copyright Orvane, Inc."},$(joined "${packages[@]}")
  ],
  "files": [$(joined "${files[@]}")
  ],
  "relationships": [$(joined "${relations[@]}")
  ]
}
EOF
