# The GenICam GenApi SDK (the reference implementation, version 3): the target GenApiSdk::GenApi.
#
# GENICAM_ROOT names its folder; without it, the environment does: GENICAM_ROOT, or GENICAM_ROOT_V3_x, which the
# SDK's installer sets, the newest x first. Below that folder, headers are looked for in library/CPP/include and
# include, libraries in library/CPP/lib/PLATFORM, bin/PLATFORM, lib/PLATFORM, lib and bin.
set(GENICAM_ROOT "" CACHE PATH "Folder of the GenICam SDK, for FFC_GENAPI=sdk")

# What the environment says, as far as it says anything.
function(ffc_get_genicam_root root_out said_by_out)
  set(variables GENICAM_ROOT)
  foreach(minor RANGE 9 0 -1)
    list(APPEND variables "GENICAM_ROOT_V3_${minor}")
  endforeach()
  set(root "${GENICAM_ROOT}")
  set(said_by GENICAM_ROOT)
  foreach(variable IN LISTS variables)
    if(NOT root AND DEFINED ENV{${variable}})
      file(TO_CMAKE_PATH "$ENV{${variable}}" root)
      set(said_by "the environment variable ${variable}")
    endif()
  endforeach()
  set(${root_out} "${root}" PARENT_SCOPE)
  set(${said_by_out} "${said_by}" PARENT_SCOPE)
endfunction()

# The SDK's name for the system that is built for.
function(ffc_get_genicam_platform platform_out)
  set(system "${CMAKE_SYSTEM_NAME}")
  if(WIN32)
    set(system Win)
  endif()
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64|ARM64)$")
    set(processor ARM)
  else()
    set(processor x64)
  endif()
  set(${platform_out} "${system}64_${processor}" PARENT_SCOPE)
endfunction()

# The file of a library: GenApi or GCBase, with the names of its compiler and version after it.
function(ffc_find_genicam_library name root platform library_out)
  set(${library_out} "" PARENT_SCOPE)
  if(WIN32)
    # The one with the compiler's run-time library as a DLL, which Qt uses too.
    set(pattern "${name}_MD_*_v3_*.lib")
  else()
    set(pattern "lib${name}_*_v3_*${CMAKE_SHARED_LIBRARY_SUFFIX}")
  endif()
  foreach(folder library/CPP/lib/${platform} bin/${platform} lib/${platform} lib bin)
    file(GLOB files "${root}/${folder}/${pattern}")
    if(files)
      list(SORT files ORDER DESCENDING)
      list(GET files 0 file)
      set(${library_out} "${file}" PARENT_SCOPE)
      return()
    endif()
  endforeach()
endfunction()

function(ffc_find_genapi_sdk)
  if(MINGW)
    message(FATAL_ERROR "FFC_GENAPI=sdk: the GenICam SDK for Windows is built with Visual Studio, whose C++ "
      "libraries MinGW cannot link. Use the preset windows-msvc; see docs/building-on-windows.md.")
  endif()
  ffc_get_genicam_root(root said_by)
  if(NOT root)
    message(FATAL_ERROR "FFC_GENAPI=sdk: say where the GenICam SDK is, with -DGENICAM_ROOT=FOLDER or the "
      "environment variable GENICAM_ROOT_V3_x. It is the folder that has library/CPP/include in it.")
  endif()
  find_path(GENAPI_INCLUDE_DIR GenApi/GenApi.h PATHS "${root}" PATH_SUFFIXES library/CPP/include include
    NO_DEFAULT_PATH NO_CACHE)
  if(NOT GENAPI_INCLUDE_DIR)
    message(FATAL_ERROR "FFC_GENAPI=sdk: no GenApi/GenApi.h in library/CPP/include or include of \"${root}\", "
      "which ${said_by} names as the folder of the GenICam SDK.")
  endif()
  if(NOT EXISTS "${GENAPI_INCLUDE_DIR}/Base/GCBase.h")
    message(FATAL_ERROR "FFC_GENAPI=sdk: \"${GENAPI_INCLUDE_DIR}\" has GenApi/GenApi.h but no Base/GCBase.h, so it "
      "is not that of a GenICam SDK of version 3.")
  endif()
  ffc_get_genicam_platform(platform)
  foreach(name IN ITEMS GenApi GCBase)
    ffc_find_genicam_library(${name} "${root}" ${platform} ${name}_library)
    if(NOT ${name}_library)
      message(FATAL_ERROR "FFC_GENAPI=sdk: no library ${name} of version 3 for ${platform} below \"${root}\" "
        "(looked in library/CPP/lib/${platform}, bin/${platform}, lib/${platform}, lib and bin).")
    endif()
  endforeach()
  message(STATUS "GenICam SDK: ${root} (by ${said_by}), ${GenApi_library}")

  add_library(GenApiSdk::GenApi INTERFACE IMPORTED GLOBAL)
  target_include_directories(GenApiSdk::GenApi INTERFACE "${GENAPI_INCLUDE_DIR}")
  set_target_properties(GenApiSdk::GenApi PROPERTIES FFC_LIBRARY_FILE "${GenApi_library}")
  if(MSVC)
    # The headers name the libraries themselves, each build type its own.
    get_filename_component(folder "${GenApi_library}" DIRECTORY)
    target_link_directories(GenApiSdk::GenApi INTERFACE "${folder}")
  else()
    target_link_libraries(GenApiSdk::GenApi INTERFACE "${GenApi_library}" "${GCBase_library}")
  endif()
endfunction()

ffc_find_genapi_sdk()
set(GenApiSdk_FOUND TRUE)
