# Builds the module against a stand-in of the GenICam SDK, and looks at what is said when the SDK is not there.
#
#   cmake -DPROJECT=FOLDER -DWORK=FOLDER -DCXX=COMPILER [-DLAUNCHER=ccache] -P test.cmake
cmake_minimum_required(VERSION 3.21)
file(REMOVE_RECURSE "${WORK}")
set(sdk "${WORK}/sdk")
set(ENV{GENICAM_ROOT})
set(options -G Ninja -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER})

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    list(JOIN ARGN " " command)
    message(FATAL_ERROR "${command}\n${output}")
  endif()
endfunction()

# Configuring with these options must fail, and say this.
function(expect_refused expected)
  file(REMOVE_RECURSE "${WORK}/refused")
  execute_process(COMMAND "${CMAKE_COMMAND}" -S "${PROJECT}" -B "${WORK}/refused" ${options} -DFFC_GENAPI=sdk ${ARGN}
    RESULT_VARIABLE result OUTPUT_QUIET ERROR_VARIABLE output)
  string(REGEX REPLACE "[ \n]+" " " said "${output}")
  if(result EQUAL 0 OR NOT said MATCHES "${expected}")
    message(FATAL_ERROR "with ${ARGN} the configuration should say \"${expected}\"; it says\n${output}")
  endif()
  message(STATUS "refused as it should be: ${expected}")
endfunction()

run("${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}" -B "${WORK}/standin" ${options} -DCMAKE_INSTALL_PREFIX=${sdk})
run("${CMAKE_COMMAND}" --build "${WORK}/standin" --target install)

expect_refused("say where the GenICam SDK is, with -DGENICAM_ROOT")
expect_refused("no GenApi/GenApi.h in .*/nowhere" "-DGENICAM_ROOT=${WORK}/nowhere")
file(WRITE "${WORK}/half/library/CPP/include/GenApi/GenApi.h" "")
expect_refused("has GenApi/GenApi.h but no Base/GCBase.h" "-DGENICAM_ROOT=${WORK}/half")
file(WRITE "${WORK}/half/library/CPP/include/Base/GCBase.h" "")
expect_refused("no library GenApi of version 3 for Linux64_" "-DGENICAM_ROOT=${WORK}/half")
set(ENV{GENICAM_ROOT_V3_4} "${WORK}/nowhere")
expect_refused("which the environment variable GENICAM_ROOT_V3_4 names")

# The whole module, all symbols of it found. The newest SDK of the environment is taken.
set(ENV{GENICAM_ROOT_V3_7} "${sdk}")
run("${CMAKE_COMMAND}" -S "${PROJECT}" -B "${WORK}/build" ${options} -DFFC_GENAPI=sdk -DCMAKE_BUILD_TYPE=None
  -DCMAKE_MODULE_LINKER_FLAGS=-Wl,--no-undefined)
run("${CMAKE_COMMAND}" --build "${WORK}/build")
file(GLOB built RELATIVE "${WORK}/build/bin" "${WORK}/build/bin/*")
if(NOT built STREQUAL "FlatFieldCorrection.plx;libOmbrix.so")
  message(FATAL_ERROR "built ${built}")
endif()
file(GET_RUNTIME_DEPENDENCIES MODULES "${WORK}/build/bin/FlatFieldCorrection.plx"
  RESOLVED_DEPENDENCIES_VAR libraries UNRESOLVED_DEPENDENCIES_VAR missing)
foreach(name IN ITEMS GenApi GCBase)
  if(NOT "${sdk}/bin/Linux64_x64/lib${name}_gcc_v3_7.so" IN_LIST libraries)
    message(FATAL_ERROR "the module does not use ${name} of the SDK, but ${libraries}")
  endif()
endforeach()
