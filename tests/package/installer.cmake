# Makes the installer, runs it without a window, starts what it has installed, and takes it away again.
#
#   cmake -DBUILD=FOLDER -DWORK=FOLDER -DVERSION=VERSION -DEMULATOR=PROGRAM -P installer.cmake
cmake_minimum_required(VERSION 3.21)
get_filename_component(bin "${CMAKE_COMMAND}" DIRECTORY)
set(CMAKE_CPACK_COMMAND "${bin}/cpack")
include("${CMAKE_CURRENT_LIST_DIR}/run.cmake")

set(ENV{FFC_WINDOWS_PATH} "")
get_filename_component(root "${EMULATOR}/../../.." ABSOLUTE)
set(drive "${root}/build/wine/drive_c")
if(DEFINED ENV{WINEPREFIX})
  set(drive "$ENV{WINEPREFIX}/drive_c")
endif()
set(folder "${drive}/Program Files/FlatFieldCorrection")
set(key "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\FlatFieldCorrection")

# get_files(OUT): all files where programs and menus are.
function(get_files out)
  file(GLOB_RECURSE files LIST_DIRECTORIES true "${drive}/Program Files/*" "${drive}/ProgramData/*")
  set(${out} "${files}" PARENT_SCOPE)
endfunction()

# uninstall(EXPECTED FILE ...): the program that does it goes on in a copy of itself, which can remove it, and is done when
# only what is expected is left, and no entry in the registry.
function(uninstall)
  run("${EMULATOR}" "${folder}/Uninstall.exe" /S)
  foreach(attempt RANGE 100)
    get_files(left)
    list(REMOVE_ITEM left ${ARGN})
    execute_process(COMMAND "${EMULATOR}" reg query "${key}" RESULT_VARIABLE result OUTPUT_QUIET ERROR_QUIET)
    if(NOT left AND NOT result EQUAL 0)
      return()
    endif()
    execute_process(COMMAND "${CMAKE_COMMAND}" -E sleep 0.1)
  endforeach()
  if(result EQUAL 0)
    list(APPEND left "${key} in the registry")
  endif()
  message(FATAL_ERROR "uninstalling has left ${left}")
endfunction()

# Quickly compressed: what is in it matters here.
make_package(NSIS package -D CPACK_NSIS_COMPRESSOR=zlib)
if(NOT package MATCHES "/FlatFieldCorrection-${VERSION}-win64\\.exe$")
  message(FATAL_ERROR "it is called ${package}")
endif()
run("${EMULATOR}" --version) # the first start makes Windows' own folders
get_files(before)
list(FILTER before EXCLUDE REGEX "/Flat ?Field ?Correction") # of a run that was interrupted
if(EXISTS "${folder}/Uninstall.exe")
  uninstall(${before})
endif()

run("${EMULATOR}" "${package}" /S)
expect_host_works("${EMULATOR}" "${folder}/ffchost.exe")
run("${EMULATOR}" "${folder}/ffc.exe" --version)
if(NOT run_output MATCHES "^ffc ${VERSION}")
  message(FATAL_ERROR "ffc --version says ${run_output}")
endif()
run("${EMULATOR}" reg query "${key}" /v DisplayName)
get_files(installed)
list(FILTER installed INCLUDE REGEX "/Start Menu/.*/Flat Field Correction[.]lnk$")
file(STRINGS "${installed}" target REGEX "ffchost[.]exe" ENCODING UTF-8)
if(NOT target)
  message(FATAL_ERROR "the menu's ${installed} does not start the host")
endif()

uninstall(${before})
