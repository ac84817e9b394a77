#!/usr/bin/env bash
# Gets the sources of the libraries that the packages for Windows contain, into build/packages/sources/: the Debian source packages
# that licenses/README.txt of the package names, in these versions. They go where the packages go.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/common.sh
. scripts/sourcepackages.sh

readme=build/windows-package/package/licenses/README.txt
[ -f "$readme" ] || { echo 'sources.sh: first make the package, with scripts/package.sh --windows' >&2; exit 1; }
mapfile -t wanted < <(grep -oE '[a-z0-9.+-]+=[0-9][^ ]*' "$readme" | sort -u)
[ ${#wanted[@]} -gt 0 ] || { echo "sources.sh: $readme names no sources" >&2; exit 1; }
download_sources "$root/build/packages/sources" "${wanted[@]}"
ls -l "$root/build/packages/sources"
