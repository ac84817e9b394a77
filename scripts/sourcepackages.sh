# Debian source packages without rights: nothing of the machine is changed. Sourced, not run.

# download_sources FOLDER PACKAGE[=VERSION] ...: into FOLDER. It asks where the machine's packages come from (the same
# addresses and suites), with lists of its own.
download_sources() {
  local folder=$1 apt entry status=0
  shift
  apt=$(mktemp -d)
  mkdir -p "$apt/entries" "$apt/lists/partial" "$apt/cache" "$folder"
  for entry in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ -f "$entry" ] && sed -n 's/^deb[[:space:]]/deb-src /p' "$entry" >"$apt/entries/$(basename "$entry")"
  done
  for entry in /etc/apt/sources.list.d/*.sources; do
    [ -f "$entry" ] && sed 's/^Types:.*/Types: deb-src/' "$entry" >"$apt/entries/$(basename "$entry")"
  done
  local options=(-q -o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$apt/entries"
    -o "Dir::State::Lists=$apt/lists" -o "Dir::Cache=$apt/cache" -o "APT::Sandbox::User=$(id -un)")
  # An entry of others without sources is no harm, as long as the packages come.
  apt-get "${options[@]}" update || true
  (cd "$folder" && apt-get "${options[@]}" source --download-only "$@") || status=$?
  rm -rf "$apt"
  return "$status"
}
