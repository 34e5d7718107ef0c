#!/usr/bin/env bash
# Installs the Debian packages that building and testing need; does nothing when all are there.
#
#   scripts/bootstrap.sh [--lint] [--clang] [--mutate] [--coverage] [--release] [--bench] [--fuzz]
#
#   --lint       also the tools that ./test.sh --all uses: clang-tidy, clang-format, shellcheck
#   --clang      also the second compiler, from Debian's security archive
#   --mutate     also what scripts/mutate.sh uses
#   --coverage   also what scripts/coverage.sh uses
#   --release    also what scripts/release.sh uses
#   --bench      also what ./bench.sh uses
#   --fuzz       also what scripts/fuzz.sh uses
. "$(dirname "$0")/lib.sh"

packages=(
    cmake ninja-build g++-mingw-w64-x86-64 g++-mingw-w64-i686 mingw-w64-tools
    nlohmann-json3-dev rapidjson-dev googletest wine wine64 xvfb xauth xdotool imagemagick
    osslsigncode openssl librsvg2-bin icoutils fonts-wine fonts-dejavu-core fonts-noto-cjk tzdata
)

for option in "$@"; do
    case $option in
    --lint) packages+=(clang-tidy-22 clang-format shellcheck) ;;
    --clang) packages+=(clang-22 lld-22) ;;
    --mutate) packages+=(python3) ;;
    --coverage) packages+=(gcovr) ;;
    --release) packages+=(wixl msitools zip unzip) ;;
    --bench) packages+=(catch2 python3) ;;
    --fuzz) packages+=(clang) ;;
    *) misused "unknown option '$option'" ;;
    esac
done

missing=()
for package in "${packages[@]}"; do
    if [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
        missing+=("$package")
    fi
done
[ ${#missing[@]} -gt 0 ] || exit 0

step "Installing ${#missing[@]} packages: ${missing[*]}"
as_root=()
if [ "$(id -u)" != 0 ]; then
    command -v sudo >/dev/null || die "these packages are missing, and there is no sudo to install them: ${missing[*]}"
    as_root=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { timeout 300 "${as_root[@]}" apt-get update -qq &&
    timeout 900 "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    tail -n 20 "$log" >&2
    die "apt-get could not install the packages; its last lines are above"
fi
