# What run.sh and test.sh share: installing packages and building a preset. Sourced, not run.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# install_packages LIST ...: installs the packages of these lists of scripts/ that are missing, and says nothing
# when none is.
install_packages() {
  local wanted missing=() package
  wanted=$(cd "$root/scripts" && sed -e 's/#.*//' -e '/^[[:space:]]*$/d' "$@")
  for package in $wanted; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "Please install as root: ${missing[*]}" >&2; return 1; }
    as_root=(sudo)
  fi
  "${as_root[@]}" apt-get update -q
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}"
}

# configure_preset NAME [CMAKE OPTION ...]
configure_preset() {
  local preset=$1
  shift
  cmake --preset "$preset" -S "$root" "$@" >"$root/build/$preset-configure.log" 2>&1 || {
    cat "$root/build/$preset-configure.log" >&2
    return 1
  }
}

# build_preset NAME [CMAKE OPTION ...]
build_preset() {
  configure_preset "$@"
  cmake --build "$root/build/$1" --parallel "$(nproc)"
}
