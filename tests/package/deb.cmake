# Makes the Debian package, unpacks it and starts the host from there.
#
#   cmake -DSOURCE=FOLDER -DBUILD=FOLDER -DWORK=FOLDER -DVERSION=VERSION -P deb.cmake
cmake_minimum_required(VERSION 3.21)
get_filename_component(bin "${CMAKE_COMMAND}" DIRECTORY)
set(CMAKE_CPACK_COMMAND "${bin}/cpack")
include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")
include("${CMAKE_CURRENT_LIST_DIR}/libraries.cmake")

make_package(DEB package)
if(NOT package MATCHES "/flatfieldcorrection_${VERSION}_[a-z0-9]+\\.deb$")
  message(FATAL_ERROR "it is called ${package}")
endif()
run(dpkg-deb --field "${package}" Depends)
set(depends "${run_output}")
foreach(library IN ITEMS libqt5core5a libqt5widgets5 libqwt-qt5-6 libc6)
  if(NOT run_output MATCHES "(^|, )${library} ")
    message(FATAL_ERROR "it does not depend on ${library}, but on ${run_output}")
  endif()
endforeach()
run(dpkg-deb --field "${package}" Recommends)
foreach(recommended IN ITEMS fonts-wqy-microhei qttranslations5-l10n)
  if(NOT run_output MATCHES "(^|, )${recommended}(,|[\n]|$)")
    message(FATAL_ERROR "in Chinese it needs ${recommended}, but it recommends ${run_output}")
  endif()
endforeach()

# Not installed, which would change this machine: its programs find each other wherever they stand.
run(dpkg-deb --extract "${package}" root)
file(GLOB_RECURSE files RELATIVE "${WORK}/root" "${WORK}/root/*")
foreach(file IN ITEMS usr/bin/ffchost usr/bin/ffc usr/share/man/man1/ffc.1.gz
                      usr/share/man/man1/ffchost.1.gz usr/share/doc/flatfieldcorrection/copyright
                      usr/share/doc/flatfieldcorrection/VERSION.txt usr/share/doc/flatfieldcorrection/changelog.gz
                      usr/share/applications/ffchost.desktop usr/share/metainfo/ffchost.metainfo.xml
                      usr/share/icons/hicolor/scalable/apps/ffchost.svg usr/share/icons/hicolor/48x48/apps/ffchost.png
                      usr/share/doc/flatfieldcorrection/examples/Snakefile
                      usr/share/doc/flatfieldcorrection/examples/ffc-array.sbatch usr/share/bash-completion/completions/ffc
                      usr/share/bash-completion/completions/ffchost
                      usr/lib/flatfieldcorrection/FlatFieldCorrection.plx
                      usr/lib/flatfieldcorrection/libOmbrix.so usr/share/doc/flatfieldcorrection/README.md)
  if(NOT file IN_LIST files)
    message(FATAL_ERROR "${file} is not in the package, but ${files}")
  endif()
endforeach()
run(ldd root/usr/lib/flatfieldcorrection/FlatFieldCorrection.plx)
if(NOT run_output MATCHES "libOmbrix\\.so => [^\n]*root/usr/lib/flatfieldcorrection/")
  message(FATAL_ERROR "the module takes another image library:\n${run_output}")
endif()
expect_host_works("${CMAKE_COMMAND}" -E env QT_QPA_PLATFORM=offscreen root/usr/bin/ffchost)
run("${CMAKE_COMMAND}" -E env --unset=DISPLAY root/usr/bin/ffc --version)
if(NOT run_output MATCHES "^ffc ${VERSION}")
  message(FATAL_ERROR "ffc --version says ${run_output}")
endif()

# The entry of the menu starts a program that the package brings, with an icon that it brings.
file(STRINGS "${WORK}/root/usr/share/applications/ffchost.desktop" entry REGEX "^(Exec|Icon)=")
if(NOT entry STREQUAL "Exec=ffchost;Icon=ffchost")
  message(FATAL_ERROR "the menu entry says ${entry}")
endif()

# Whatever library has headers in the programs is one that comes with a package of its own, or its text is in the copyright file.
file(READ "${WORK}/root/usr/share/doc/flatfieldcorrection/copyright" copyright)
expect_licenses_for_debian("${depends}" "${copyright}")

# What checks packages finds no error, where it is installed. AppStream asks for a licence of the description, which has not
# been chosen either.
find_program(lintian lintian)
if(lintian)
  run("${lintian}" --allow-root --fail-on error "${package}")
endif()
find_program(desktop_file_validate desktop-file-validate)
if(desktop_file_validate)
  run("${desktop_file_validate}" root/usr/share/applications/ffchost.desktop)
endif()
find_program(appstreamcli appstreamcli)
if(appstreamcli)
  execute_process(COMMAND "${appstreamcli}" validate --no-net --no-color root/usr/share/metainfo/ffchost.metainfo.xml
    WORKING_DIRECTORY "${WORK}" OUTPUT_VARIABLE output ERROR_VARIABLE output)
  string(REGEX MATCHALL "[EW]: [^\n]*" found "${output}")
  list(FILTER found EXCLUDE REGEX "metadata-license-missing")
  if(found OR NOT output MATCHES "metadata-license-missing")
    message(FATAL_ERROR "appstreamcli finds:\n${output}")
  endif()
endif()
