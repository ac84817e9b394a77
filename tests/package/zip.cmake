# Makes the package for Windows, unpacks it and starts the host from there, with nothing else on the path.
#
#   cmake -DBUILD=FOLDER -DWORK=FOLDER -DVERSION=VERSION -DEMULATOR=PROGRAM -P zip.cmake
cmake_minimum_required(VERSION 3.21)
get_filename_component(bin "${CMAKE_COMMAND}" DIRECTORY)
set(CMAKE_CPACK_COMMAND "${bin}/cpack")
include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")

make_package(ZIP package)
if(NOT package MATCHES "/FlatFieldCorrection-${VERSION}-win64\\.zip$")
  message(FATAL_ERROR "it is called ${package}")
endif()
file(ARCHIVE_EXTRACT INPUT "${package}" DESTINATION "${WORK}/unpacked")
set(folder "${WORK}/unpacked/FlatFieldCorrection-${VERSION}-win64")

# Its README names every file in it, and no other.
file(GLOB_RECURSE files RELATIVE "${folder}" "${folder}/*")
list(REMOVE_ITEM files README.txt)
file(READ "${folder}/README.txt" readme)
foreach(file IN LISTS files)
  get_filename_component(name "${file}" NAME)
  list(APPEND names "${name}")
  string(REPLACE "/" "\\" name "${file}")
  string(FIND "${readme}" "${name}" place)
  if(place EQUAL -1)
    message(FATAL_ERROR "README.txt does not name ${name}")
  endif()
endforeach()
string(REGEX MATCHALL "[A-Za-z0-9_+-]+\\.(dll|exe|plx)" named "${readme}")
foreach(name IN LISTS named)
  if(NOT name IN_LIST names)
    message(FATAL_ERROR "README.txt names ${name}, which is not there")
  endif()
endforeach()

set(ENV{FFC_WINDOWS_PATH} "")
expect_host_works(${EMULATOR} "${folder}/ffchost.exe")
