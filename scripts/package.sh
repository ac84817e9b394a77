#!/usr/bin/env bash
# Makes what is given away: "scripts/package.sh" the Debian package, "scripts/package.sh --windows" the zip and the installer for
# 64-bit Windows. Beside the packages in build/packages/ stand SHA256SUMS and a VERSION file each, which names the compiler, the
# Qt and the GenApi of the viewers that the module is for.
#
# The same sources make the same packages, wherever and whenever: the time in them is SOURCE_DATE_EPOCH, or that of the last
# commit. scripts/reproducible.sh tries that.
set -euo pipefail
umask 022
cd "$(dirname "$0")/.."
. scripts/common.sh

if [ -z "${SOURCE_DATE_EPOCH:-}" ]; then
  SOURCE_DATE_EPOCH=$(git log -1 --format=%ct 2>/dev/null || stat -c %Y CHANGELOG.md)
fi
export SOURCE_DATE_EPOCH LC_ALL=C.UTF-8 TZ=UTC
packages=$root/build/packages

# pack_again ZIP: the files in the order of their names, and without who owned them.
pack_again() {
  local zip=$1 folder
  folder=$(mktemp -d)
  cmake -E chdir "$folder" cmake -E tar xf "$zip"
  find "$folder" -exec touch --no-dereference "--date=@$SOURCE_DATE_EPOCH" {} +
  rm "$zip"
  (cd "$folder" && find . -type f -printf '%P\n' | sort | zip -q -X -9 "$zip" -@)
  rm -r "$folder"
}

# make_packages PRESET SYSTEM: all kinds of packages that the preset is for.
make_packages() {
  local made=$root/build/$1/packages zip
  build_preset "$1"
  rm -rf "$made"
  cpack --config "build/$1/CPackConfig.cmake" -B "$made"
  mkdir -p "$packages"
  for zip in "$made"/*.zip; do
    [ ! -f "$zip" ] || pack_again "$zip"
  done
  cp -- "$made"/*.deb "$packages/" 2>/dev/null || cp -- "$made"/*.zip "$made"/*.exe "$packages/"
  cp "build/$1/package/VERSION.txt" "$packages/VERSION-$2.txt"
  (cd "$packages" && find . -maxdepth 1 -type f ! -name SHA256SUMS -printf '%P\n' | sort | xargs -d '\n' sha256sum >SHA256SUMS)
}

mkdir -p build
case "${1:-}" in
  '')
    install_packages packages.txt
    make_packages package linux
    ;;
  --windows)
    install_packages packages.txt packages-windows.txt
    scripts/windows/toolchain.sh
    make_packages windows-package windows
    ;;
  *)
    sed -n '2,/^set /{s/^# \{0,1\}//;/^set /d;p}' "$0" >&2
    exit 2
    ;;
esac
cat "$packages/SHA256SUMS"
