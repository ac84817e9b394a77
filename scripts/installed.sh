#!/usr/bin/env bash
# Installs the Debian package as a user gets it, as root in a Debian of its own (build/installed/): "scripts/installed.sh
# [PACKAGE.deb]", unless told the one in build/packages/. It starts the host from the menu entry on a display, the programs from
# the path, looks for the manual pages, removes the package and compares all files with those before.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/common.sh

[ "$(id -u)" -eq 0 ] || { echo 'installed.sh: to be run as root' >&2; exit 1; }
package=$(realpath "${1:-$(find build/packages -name '*.deb' | sort | tail -n 1)}")
work=$root/build/installed
system=$work/root
pids=()
end() {
  for pid in "${pids[@]}"; do
    kill "$pid" 2>/dev/null || true
  done
  wait
  umount "$system/proc" 2>/dev/null || true
}
trap end EXIT

fail() {
  echo "installed.sh: $*" >&2
  exit 1
}

# inside COMMAND ...: as root in the new system. as_user COMMAND ...: as somebody who uses it, on the display.
inside() {
  chroot "$system" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 "$@"
}
as_user() {
  exec chroot --userspec=user:user "$system" env -i PATH=/usr/bin:/bin HOME=/home/user LC_ALL=C.UTF-8 DISPLAY="$display" \
    QT_XCB_GL_INTEGRATION=none "$@"
}

# make_system: Debian as small as apt needs it, from where this machine has its packages, with what the package depends on.
make_system() {
  local sources=() file
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/debian.sources; do
    [ ! -f "$file" ] || sources+=("$file")
  done
  rm -rf --one-file-system "$work"
  mkdir -p "$work"
  mmdebstrap --quiet --mode=root --variant=apt bookworm "$system" "${sources[@]}" >"$work/log" 2>&1 ||
    { tail -n 30 "$work/log" >&2; fail 'there is no new system'; }
  [ ! -f /etc/apt/apt.conf ] || cp /etc/apt/apt.conf "$system/etc/apt/"
  cp /etc/resolv.conf "$system/etc/"
  mount -t proc proc "$system/proc" 2>/dev/null || true
  inside apt-get update -q >>"$work/log" 2>&1
  inside apt-get satisfy -q -y --no-install-recommends \
    "$(dpkg-deb --field "$package" Depends), $(dpkg-deb --field "$package" Recommends)" >>"$work/log" 2>&1 ||
    { tail -n 30 "$work/log" >&2; fail 'what the package depends on cannot be installed'; }
  inside useradd --create-home user
}

# list_files FILE: all of the system, but what its package tools write down.
list_files() {
  (cd "$system" && find . -xdev \( -path ./proc -o -path ./sys -o -path ./dev -o -path ./tmp -o -path ./home -o -path ./var/lib/dpkg \
    -o -path ./var/lib/apt -o -path ./var/log -o -path ./var/cache \) -prune -o -print | sort) >"$1"
}

# start_display: sets display.
start_display() {
  mkfifo "$work/display"
  exec 5<>"$work/display"
  Xvfb -displayfd 5 -screen 0 1600x1200x24 -nolisten tcp >"$work/display.log" 2>&1 &
  pids+=($!)
  local number
  read -r -t 20 number <&5
  display=:$number
}

# start_from_menu: what the menu entry says opens a window.
start_from_menu() {
  local entry=$system/usr/share/applications/ffchost.desktop command icon left=300
  command=$(sed -n 's/^Exec=//p' "$entry")
  icon=$(sed -n 's/^Icon=//p' "$entry")
  [ -f "$system/usr/share/icons/hicolor/48x48/apps/$icon.png" ] || fail "the menu entry's icon $icon is missing"
  (as_user sh -c "exec $command") >"$work/host.log" 2>&1 &
  local host=$!
  pids+=("$host")
  until xwininfo -display "$display" -root -tree 2>/dev/null | grep -q '"ffchost" "ffchost"'; do
    kill -0 "$host" 2>/dev/null || { cat "$work/host.log" >&2; fail "\"$command\" has ended"; }
    left=$((left - 1))
    [ $left -gt 0 ] || { xwininfo -display "$display" -root -tree; fail "\"$command\" opens no window"; }
    sleep 0.1
  done
  xwininfo -display "$display" -root -tree | grep '"ffchost" "ffchost"' | head -n 3
  kill "$host"
  wait "$host" 2>/dev/null || true
}

install_packages packages.txt packages-install.txt
make_system
list_files "$work/before"
cp "$package" "$system/tmp/package.deb"
inside dpkg --install /tmp/package.deb >>"$work/log" 2>&1 || { tail -n 30 "$work/log" >&2; fail 'it cannot be installed'; }
list_files "$work/installed"

start_display
start_from_menu
(as_user ffchost --version)
(as_user ffc --version)
(as_user sh -c 'cd && ffchost --headless --size 128x64 --frames 1 --out out >/dev/null && test -s out/report.json')
for page in ffc ffchost; do
  [ -f "$system/usr/share/man/man1/$page.1.gz" ] || fail "$page has no manual page"
done

inside dpkg --purge flatfieldcorrection >>"$work/log" 2>&1
list_files "$work/after"
diff "$work/before" "$work/after" || fail 'removing it leaves something, or takes too much'
echo "installed and removed again: $(comm -13 "$work/before" "$work/installed" | wc -l) files and folders" | tee "$work/result"
