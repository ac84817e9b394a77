# Which libraries of others the products of a build are made with, as the build itself recorded it, and whether a package has
# the licence text of each. Included by the tests of both packages, which set SOURCE, BUILD and WORK.
include("${SOURCE}/packaging/libraries.cmake")

# get_headers(OUT): the headers outside the project that its products were compiled with.
function(get_headers out)
  find_program(ninja ninja REQUIRED)
  execute_process(COMMAND "${ninja}" -C "${BUILD}" -t deps
    COMMAND awk "/^[^ ]/ { own = $1 !~ /^tests\\// } /^ / && own { print $1 }"
    COMMAND sort -u
    COMMAND xargs realpath --no-symlinks --canonicalize-missing
    COMMAND sort -u
    WORKING_DIRECTORY "${BUILD}" OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE "\n" ";" headers "${headers}")
  list(FILTER headers EXCLUDE REGEX "^$")
  # The folder of a tool chain may be in the project's, or in another's whose link it is.
  list(FILTER headers INCLUDE REGEX "^/usr/|/windows-toolchain/")
  if(NOT headers)
    message(FATAL_ERROR "the build has recorded no headers")
  endif()
  set(${out} "${headers}" PARENT_SCOPE)
endfunction()

# get_owners(OUT HEADER ...): the Debian packages that these headers belong to.
function(get_owners out)
  list(JOIN ARGN "\n" headers)
  file(WRITE "${WORK}/headers.txt" "${headers}\n")
  execute_process(COMMAND xargs --arg-file "${WORK}/headers.txt" dpkg-query --search OUTPUT_VARIABLE found)
  string(REGEX MATCHALL "(^|\n)[a-z0-9.+-]+" packages "${found}")
  list(TRANSFORM packages STRIP)
  list(REMOVE_DUPLICATES packages)
  set(${out} "${packages}" PARENT_SCOPE)
endfunction()

# get_sources(OUT PACKAGE ...): their source packages.
function(get_sources out)
  execute_process(COMMAND dpkg-query --show --showformat "\${source:Package};" ${ARGN} OUTPUT_VARIABLE sources ERROR_QUIET)
  list(FILTER sources EXCLUDE REGEX "^$")
  list(REMOVE_DUPLICATES sources)
  set(${out} "${sources}" PARENT_SCOPE)
endfunction()

# expect_licenses_for_debian(DEPENDS COPYRIGHT)
function(expect_licenses_for_debian depends copyright)
  string(REGEX REPLACE "\\([^)]*\\)|[ \n]" "" depends "${depends}")
  string(REPLACE "," ";" depends "${depends}")
  get_sources(depended_sources ${depends})
  get_headers(headers)
  get_owners(packages ${headers})
  # What the compiler and the system bring is excepted by their licences where it gets into a program.
  list(FILTER packages EXCLUDE REGEX "^(libc6-dev|linux-libc-dev|libstdc\\+\\+-[0-9]+-dev|libgcc-[0-9]+-dev)$")
  list(LENGTH packages count)
  if(count LESS 4)
    message(FATAL_ERROR "only these libraries are used: ${packages}")
  endif()
  foreach(package IN LISTS packages)
    get_sources(source ${package})
    string(FIND "${copyright}" " (${package}) " place)
    if(place EQUAL -1 AND NOT source IN_LIST depended_sources)
      message(FATAL_ERROR "${package} is compiled in, but its licence is neither in the copyright file nor in a package on "
        "which this one depends")
    endif()
  endforeach()
  message(STATUS "licences are there for ${packages}")
endfunction()
