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

# For Xvfb; a display must not reset itself whenever the last program closes it.
screen='-screen 0 1600x1200x24 -noreset'

# run_on_displays COMMAND ...: with real windows, on a display for the command and one more for each program with windows
# that runs at once (tests/support/qtmain.cpp takes it), since those on one display take each other's input focus.
run_on_displays() (
  numbers=$(mktemp)
  trap 'kill $(jobs -p) 2>/dev/null; rm -f "$numbers"' EXIT
  export FFC_TEST_DISPLAYS=
  for ((display = 0; display < $(nproc); display++)); do
    number=
    : >"$numbers"
    # shellcheck disable=SC2086
    Xvfb -displayfd 3 $screen 3>"$numbers" >/dev/null 2>&1 &
    for ((tries = 0; tries < 100; tries++)); do
      ! read -r number <"$numbers" || break
      sleep 0.1
    done
    [ -n "$number" ] || { echo 'Xvfb does not start.' >&2; exit 1; }
    FFC_TEST_DISPLAYS+=":$number "
  done
  xvfb-run -a -s "$screen" "$@"
)
