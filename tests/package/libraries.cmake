# Which libraries of others the products of a build are made with, as the build itself recorded it, and whether a package has
# the licence text of each. Included by the tests of both packages, which set SOURCE, BUILD and WORK.
include("${SOURCE}/packaging/libraries.cmake")

# get_headers(OUT): the headers outside the project that its products were compiled with.
function(get_headers out)
  find_program(ninja ninja REQUIRED)
  execute_process(COMMAND "${ninja}" -C "${BUILD}" -t deps
    COMMAND awk "/^[^ ]/ { own = $1 !~ /^(tests|googletest)\\// } /^ / && own { print $1 }"
    COMMAND sort -u
    COMMAND xargs realpath --no-symlinks --canonicalize-missing
    COMMAND sort -u
    WORKING_DIRECTORY "${BUILD}" OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE "\n" ";" headers "${headers}")
  list(FILTER headers EXCLUDE REGEX "^$")
  # The folder of a tool chain may be in the project's, or in another's whose link it is.
  list(FILTER headers INCLUDE REGEX "^/usr/|/windows-toolchain/")
  # The C++ library asks whether it is there; clang takes that for a use.
  list(FILTER headers EXCLUDE REGEX "/tbb/tbb\\.h$")
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
  list(FILTER packages EXCLUDE REGEX "^(libc6-dev|linux-libc-dev|libstdc\\+\\+-[0-9]+-dev|libgcc-[0-9]+-dev|libclang-common-[0-9]+-dev)$")
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

# expect_text(NAME FOLDER README): the library has its line in the README, and the texts that this names are there.
function(expect_text name folder readme)
  string(REGEX MATCH "\n${name}: ([^\n]*[.]txt)\r?\n" line "${readme}")
  string(REPLACE ", " ";" texts "${CMAKE_MATCH_1}")
  if(NOT line OR NOT "${name}.txt" IN_LIST texts)
    message(FATAL_ERROR "licenses/README.txt says nothing of the licence of ${name}")
  endif()
  foreach(text IN LISTS texts)
    file(SIZE "${folder}/licenses/${text}" size)
    if(size LESS 500)
      message(FATAL_ERROR "licenses/${text} is no licence text")
    endif()
  endforeach()
endfunction()

# find_library_of(OUT KIND THING): the library that a file of the package, a header or an archive belongs to.
function(find_library_of out kind thing)
  foreach(line IN LISTS FFC_LIBRARIES)
    ffc_get_library("${line}" name package files headers archives)
    if("${thing}" MATCHES "${${kind}}")
      set(${out} "${name}" PARENT_SCOPE)
      return()
    endif()
  endforeach()
  message(FATAL_ERROR "nobody knows whose ${thing} is: it belongs into packaging/libraries.cmake")
endfunction()

# get_archives(OUT): the static and import libraries outside the project that its products are linked with.
function(get_archives out)
  execute_process(COMMAND awk
    "/^build / { own = /^build bin\\/(ffc[.]exe|ffchost[.]exe|Ombrix[.]dll|FlatFieldCorrection[.]plx)/ } own && /LINK_LIBRARIES/"
    "${BUILD}/build.ninja" OUTPUT_VARIABLE lines COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^ ]+/windows-toolchain/[^ ]+[.]a" archives "${lines}")
  if(NOT archives MATCHES "Qt5Core")
    message(FATAL_ERROR "the build has recorded no libraries")
  endif()
  list(REMOVE_DUPLICATES archives)
  set(${out} "${archives}" PARENT_SCOPE)
endfunction()

# expect_licenses_for_windows(FOLDER): of the unpacked package.
function(expect_licenses_for_windows folder)
  file(READ "${folder}/licenses/README.txt" readme)
  file(GLOB_RECURSE libraries RELATIVE "${folder}" "${folder}/*.dll")
  list(FILTER libraries EXCLUDE REGEX "^Ombrix[.]dll$")
  set(names)
  foreach(library IN LISTS libraries)
    get_filename_component(library "${library}" NAME)
    find_library_of(name files "${library}")
    list(APPEND names ${name})
  endforeach()
  get_headers(headers)
  foreach(header IN LISTS headers)
    find_library_of(name headers "${header}")
    list(APPEND names ${name})
  endforeach()
  get_archives(archives)
  foreach(archive IN LISTS archives)
    find_library_of(name archives "${archive}")
    list(APPEND names ${name})
  endforeach()
  list(REMOVE_DUPLICATES names)
  foreach(name IN LISTS names)
    expect_text(${name} "${folder}" "${readme}")
  endforeach()
  message(STATUS "licences are there for ${names}")
endfunction()

# expect_imports(FOLDER): all that its programs and libraries load comes with Windows or is in the package.
function(expect_imports folder)
  find_program(objdump NAMES x86_64-w64-mingw32-objdump objdump REQUIRED)
  file(GLOB_RECURSE files "${folder}/*.exe" "${folder}/*.dll" "${folder}/*.plx")
  file(GLOB here RELATIVE "${folder}" "${folder}/*.dll")
  execute_process(COMMAND "${objdump}" -p ${files} COMMAND sed -n "s/^.*DLL Name: //p" COMMAND sort -fu
    OUTPUT_VARIABLE imports COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]+" imports "${imports}")
  list(TRANSFORM imports TOLOWER OUTPUT_VARIABLE imports)
  list(TRANSFORM here TOLOWER OUTPUT_VARIABLE here)
  list(REMOVE_ITEM imports ${here} advapi32.dll comdlg32.dll d3d11.dll dwmapi.dll dxgi.dll gdi32.dll imm32.dll kernel32.dll mpr.dll msvcrt.dll
    netapi32.dll ole32.dll oleaut32.dll shell32.dll user32.dll userenv.dll uxtheme.dll version.dll winmm.dll ws2_32.dll
    wtsapi32.dll)
  if(imports)
    message(FATAL_ERROR "neither in the package nor of Windows: ${imports}")
  endif()
endfunction()
