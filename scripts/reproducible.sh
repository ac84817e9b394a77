#!/usr/bin/env bash
# Builds the packages twice, in folders of different names, with sources of different times, by different users (as root) in
# different languages, and compares them byte for byte: "scripts/reproducible.sh" the Debian package, "scripts/reproducible.sh
# --windows" the zip and the installer for Windows (with the tool chain in build/windows-toolchain/ for both). It takes two
# builds of the programs without tests and without a compiler cache, in build/reproducible/.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/common.sh


# keep_sources: what git knows, in the state that it has here, for both builds.
keep_sources() {
  mkdir -p "$work"
  git ls-files -z | tar --null --files-from=- -cf "$work/sources.tar"
  echo "${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}" >"$work/time"
}

# copy_sources FOLDER
copy_sources() {
  rm -rf "$1"
  mkdir -p "$1/build"
  tar -C "$1" -xf "$work/sources.tar"
  [ -z "$option" ] || cp -a build/windows-toolchain "$1/build/"
  SOURCE_DATE_EPOCH=$(cat "$work/time")
  export SOURCE_DATE_EPOCH
}

build_first() {
  keep_sources
  copy_sources "$first"
  (cd "$first" && CCACHE_DISABLE=1 LANG=C.UTF-8 TZ=Asia/Tokyo scripts/package.sh $option)
}

build_second() {
  local other=()
  copy_sources "$second"
  find "$second" -exec touch --no-dereference --date=2001-02-03 {} +
  if [ "$(id -u)" -eq 0 ]; then
    chown -R nobody "$second"
    other=(setpriv --reuid=nobody --regid=nogroup --clear-groups)
  fi
  (umask 077 && cd "$second" &&
    CCACHE_DISABLE=1 HOME="$second/build" USER=nobody LANG=de_DE.UTF-8 TZ=America/New_York "${other[@]}" scripts/package.sh $option)
}

# compare: the sums, and of packages that differ what differs in them.
compare() {
  if cmp "$first/build/packages/SHA256SUMS" "$second/build/packages/SHA256SUMS"; then
    echo 'reproducible: both builds made the same, byte for byte:'
    cat "$first/build/packages/SHA256SUMS"
    return
  fi
  echo 'NOT reproducible:' >&2
  diff "$first/build/packages/SHA256SUMS" "$second/build/packages/SHA256SUMS" >&2 || true
  local file sums
  for sums in "$first" "$second"; do
    (cd "$sums/build/"*package/packages/_CPack_Packages && find . -type f -exec sha256sum {} + | sort -k 2 >"$sums/build/files")
  done
  diff "$first/build/files" "$second/build/files" >&2 || true
  return 1
}

option=
system=linux
if [ "${1:-}" = --windows ]; then
  option=--windows
  system=windows
  shift
fi
work=$root/build/reproducible/$system
first=$work/first
second=$work/another/folder-of-another-name
case "${1:-all}" in
  all)
    build_first
    build_second
    compare
    ;;
  first) build_first ;;
  second) build_second ;;
  compare) compare ;;
  *)
    sed -n '2,/^set /{s/^# \{0,1\}//;/^set /d;p}' "$0" >&2
    exit 2
    ;;
esac
