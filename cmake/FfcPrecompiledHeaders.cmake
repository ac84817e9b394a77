# What nearly every test includes, compiled once per build instead of once per source: a quarter of the time of the tests.
# (The product's own sources would gain little: each would read more than it needs.)
#
# It hides an include that a source lacks, so some builds go without: the preset debug, and those with a compiler cache,
# which could not look into it. A set is shared by many targets. They may define what its headers do not ask for, but need
# the same compiler options.
if(CMAKE_CXX_COMPILER_LAUNCHER OR MSVC)
  set(CMAKE_DISABLE_PRECOMPILE_HEADERS ON)
endif()

# What programs and libraries are told in their own ways, or not at all.
set(FFC_PRECOMPILED_OPTIONS)
if(UNIX)
  set(FFC_PRECOMPILED_OPTIONS -fPIC -pthread)
endif()

# ffc_add_precompiled_headers(NAME HEADERS ... [LINK ...])
#
# A set for ffc_use_precompiled_headers.
function(ffc_add_precompiled_headers name)
  if(CMAKE_DISABLE_PRECOMPILE_HEADERS)
    return()
  endif()
  cmake_parse_arguments(ARG "" "" "HEADERS;LINK" ${ARGN})
  set(source "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp")
  file(CONFIGURE OUTPUT "${source}" CONTENT "")
  add_library(${name} OBJECT "${source}")
  target_link_libraries(${name} PRIVATE ffc_options ${ARG_LINK})
  target_compile_options(${name} PRIVATE ${FFC_PRECOMPILED_OPTIONS})
  target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

# ffc_use_precompiled_headers(TARGET SET)
function(ffc_use_precompiled_headers target set)
  if(NOT CMAKE_DISABLE_PRECOMPILE_HEADERS)
    target_compile_options(${target} PRIVATE ${FFC_PRECOMPILED_OPTIONS})
    target_precompile_headers(${target} REUSE_FROM ${set})
  endif()
endfunction()
