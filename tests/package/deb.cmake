# Makes the Debian package, unpacks it and starts the host from there.
#
#   cmake -DBUILD=FOLDER -DWORK=FOLDER -DVERSION=VERSION -P deb.cmake
cmake_minimum_required(VERSION 3.21)
get_filename_component(bin "${CMAKE_COMMAND}" DIRECTORY)
set(CMAKE_CPACK_COMMAND "${bin}/cpack")
include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")

make_package(DEB package)
if(NOT package MATCHES "/flatfieldcorrection_${VERSION}_[a-z0-9]+\\.deb$")
  message(FATAL_ERROR "it is called ${package}")
endif()
run(dpkg-deb --field "${package}" Depends)
foreach(library IN ITEMS libqt5core5a libqt5widgets5 libqwt-qt5-6 libc6)
  if(NOT run_output MATCHES "(^|, )${library} ")
    message(FATAL_ERROR "it does not depend on ${library}, but on ${run_output}")
  endif()
endforeach()

# Not installed, which would change this machine: its programs find each other wherever they stand.
run(dpkg-deb --extract "${package}" root)
file(GLOB_RECURSE files RELATIVE "${WORK}/root" "${WORK}/root/*")
foreach(file IN ITEMS usr/bin/ffchost usr/bin/ffc usr/share/man/man1/ffc.1
                      usr/share/man/man1/ffchost.1 usr/share/doc/flatfieldcorrection/examples/Snakefile
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
