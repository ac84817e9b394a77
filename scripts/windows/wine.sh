#!/usr/bin/env bash
# wine.sh PROGRAM.EXE [ARGUMENT ...]
# wine.sh --end
#
# Runs a Windows program of this project's build on this machine, with its exit code. It finds the libraries
# of the tool chain (or those of FFC_WINDOWS_PATH alone, where that is set) and keeps what Wine writes in the
# build folder. All programs of one run must have the same display, or none; --end ends whatever still runs.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

wine=$(command -v wine64 || echo /usr/lib/wine/wine64)
[ -x "$wine" ] || { echo 'wine.sh: there is no 64-bit Wine; see scripts/packages-windows.txt' >&2; exit 1; }

wineserver=$(command -v wineserver || echo /usr/lib/wine/wineserver64)

export WINEPREFIX=${WINEPREFIX:-$root/build/wine}
if [ "${1:-}" = --end ]; then
  [ ! -d "$WINEPREFIX" ] || "$wineserver" -k || true
  exit 0
fi
export WINEARCH=win64
export WINEDEBUG=${WINEDEBUG:--all}
# Neither .NET nor a browser: Wine would offer to fetch them.
export WINEDLLOVERRIDES='mscoree,mshtml='
export WINEPATH=${FFC_WINDOWS_PATH-"$root/build/windows-toolchain/qt5-mingw/bin"}

# The off-screen platform knows no fonts of its own, and Wine's folder of fonts has none of text.
export QT_QPA_FONTDIR=${QT_QPA_FONTDIR:-Z:/usr/share/fonts/truetype/dejavu}
# Messages go where those of other systems go, also without a console.
export QT_FORCE_STDERR_LOGGING=1
# Wine takes away the toolkit's variables, except under this name.
while IFS='=' read -r name value; do
  export "WINE$name=$value"
done < <(env | grep '^QT_')

# A fresh folder takes some seconds to fill, once.
make_prefix() {
  [ -f "$WINEPREFIX/ready" ] && return
  mkdir -p "$WINEPREFIX"
  exec 9>"$WINEPREFIX.lock"
  flock 9
  [ -f "$WINEPREFIX/ready" ] && return
  "$wine" wineboot --init >/dev/null 2>&1 9>&-
  local font
  # The fonts of dialogs: without them a serif one with double line height is taken. (Wine draws no capital I
  # of Liberation Sans in the size of a dialog.)
  for font in Tahoma 'MS Shell Dlg' 'MS Shell Dlg 2' 'Segoe UI'; do
    "$wine" reg add 'HKCU\Software\Wine\Fonts\Replacements' /v "$font" /d 'DejaVu Sans' /f >/dev/null 2>&1 9>&-
  done
  # No window manager answers on a display of tests; waiting for one takes two seconds for each window.
  "$wine" reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f >/dev/null 2>&1 9>&-
  "$wineserver" -w
  touch "$WINEPREFIX/ready"
  flock -u 9
}
make_prefix

# Wine's own programs, which the first one starts and which stay on, keep the streams open that they are
# given, and its server those of a program that was killed: whoever waits for their end would wait for them. So both go
# through pipes that end with the program; a remark of Wine's own about the disk does not pass.
end="end of $$.$RANDOM"
pass=(sed -u -e '/^wine: Read access denied for device/d' -e "/$end\$/{s/$end\$//;/./p;Q}")
exec 3> >(exec "${pass[@]}" >&2)
readers=$!
exec 4> >(exec "${pass[@]}" 3>&-)
readers="$readers $!"
status=0
"$wine" "$@" >&4 2>&3 3>&- 4>&- || status=$?
printf '%s\n' "$end" >&3
printf '%s\n' "$end" >&4
for reader in $readers; do
  wait "$reader" || true
done
exit "$status"
