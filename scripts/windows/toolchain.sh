#!/usr/bin/env bash
# toolchain.sh [FOLDER]
#
# Makes what the Windows build needs beside packages, in build/windows-toolchain/ or in FOLDER, unless it is there:
#
#   qt5-mingw/   Qt for 64-bit Windows: its base, with the build tools for this machine
#   libraries/   Qwt, as a static library, and CLI11
#
# Qt comes from Debian's source package, which takes a quarter of an hour on two cores and 2.5 GB, or from a ready
# copy: FFC_QT_MINGW_CACHE names its archive (qt5-mingw-*.tar.xz) or the folder with that.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
. "$root/scripts/sourcepackages.sh"
folder=${1:-$root/build/windows-toolchain}
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)
host=x86_64-w64-mingw32
log=$folder/toolchain.log

# run COMMAND ...: quietly, unless it fails.
run() {
  "$@" >"$log" 2>&1 || { tail -n 40 "$log" >&2; echo "toolchain.sh: failed: $*" >&2; return 1; }
}

# fetch_source PACKAGE: unpacks the source package into source/PACKAGE/.
fetch_source() {
  local package=$1 download=$folder/download
  rm -rf "$download" "$folder/source/$package"
  mkdir -p "$folder/source"
  run download_sources "$download" "$package"
  run dpkg-source --no-check -x "$download"/*.dsc "$folder/source/$package"
  rm -rf "$download"
}

unpack_ready_qt() {
  local archive=$FFC_QT_MINGW_CACHE
  if [ -d "$archive" ]; then
    archive=$(find "$archive" -maxdepth 1 -name 'qt5-mingw-*.tar.xz' | sort | tail -n 1)
  fi
  [ -f "$archive" ] || { echo "toolchain.sh: no qt5-mingw-*.tar.xz in $FFC_QT_MINGW_CACHE" >&2; return 1; }
  echo "Qt for Windows: $archive"
  rm -rf "$folder/unpacked"
  mkdir -p "$folder/unpacked"
  tar -C "$folder/unpacked" -xf "$archive"
  mv "$folder/unpacked/qt5-mingw" "$folder/qt5-mingw"
  rmdir "$folder/unpacked"
}

configure_qt() {
  ../source/qtbase-opensource-src/configure -opensource -confirm-license -silent -prefix "$folder/qt5-mingw" \
    -xplatform win32-g++ -device-option CROSS_COMPILE=$host- -release -shared -make libs \
    -nomake examples -nomake tests -nomake tools \
    -no-opengl -no-feature-vulkan -no-feature-direct2d1_1 -no-openssl -no-dbus -no-icu -no-glib -no-pkg-config \
    -no-feature-network -no-feature-sql -no-feature-xml -no-feature-printer -no-feature-tabletevent -no-libjpeg \
    -feature-textcodec -feature-codecs -feature-big_codecs \
    -qt-zlib -qt-libpng -qt-pcre -qt-harfbuzz -qt-freetype -qt-doubleconversion
}

build_qt() {
  echo 'Qt for Windows: from the source package; this takes a quarter of an hour.'
  fetch_source qtbase-opensource-src
  # The machine's own choice may be the compilers without std::thread.
  local tool
  mkdir -p "$folder/compilers"
  for tool in gcc g++; do
    ln -sf "$(command -v $host-$tool-posix)" "$folder/compilers/$host-$tool"
  done
  export PATH="$folder/compilers:$PATH"
  rm -rf "$folder/qt-build" "$folder/qt5-mingw"
  mkdir -p "$folder/qt-build"
  cd "$folder/qt-build"
  echo '  configure'
  run configure_qt
  echo '  build'
  run make -j"$(nproc)"
  run make install
  cd "$folder"
  finish_qt
  rm -rf "$folder/qt-build" "$folder/source"
}

# The compiler's own run-time libraries belong to it, and nothing needs the symbols.
finish_qt() {
  local library
  for library in libgcc_s_seh-1 libstdc++-6; do
    cp "$($host-gcc-posix -print-file-name=$library.dll)" "$folder/qt5-mingw/bin/"
  done
  cp "/usr/$host/lib/libwinpthread-1.dll" "$folder/qt5-mingw/bin/"
  find "$folder/qt5-mingw" -name '*.dll' -exec $host-strip --strip-unneeded {} +
}

build_qwt() {
  echo 'Qwt for Windows: from the source package.'
  fetch_source qwt
  run cmake -S "$root/scripts/windows/qwt" -B "$folder/qwt-build" -G Ninja \
    -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake" -DCMAKE_FIND_ROOT_PATH="$folder/qt5-mingw" \
    -DCMAKE_BUILD_TYPE=Release -DQWT_SOURCE_DIR="$folder/source/qwt" -DCMAKE_INSTALL_PREFIX="$folder/libraries"
  run cmake --build "$folder/qwt-build" --parallel "$(nproc)"
  run cmake --install "$folder/qwt-build"
  rm -rf "$folder/qwt-build" "$folder/source"
}

# Headers only, but beside headers of this machine that a cross compiler must not see.
copy_cli11() {
  mkdir -p "$folder/libraries/include" "$folder/libraries/share/cmake"
  cp -r /usr/include/CLI "$folder/libraries/include/"
  cp -r /usr/share/cmake/CLI11 "$folder/libraries/share/cmake/"
}

if [ ! -f "$folder/qt5-mingw/bin/libwinpthread-1.dll" ]; then
  if [ -n "${FFC_QT_MINGW_CACHE:-}" ]; then unpack_ready_qt; else build_qt; fi
fi
[ -f "$folder/libraries/lib/libqwt.a" ] || build_qwt
[ -f "$folder/libraries/share/cmake/CLI11/CLI11Config.cmake" ] || copy_cli11
