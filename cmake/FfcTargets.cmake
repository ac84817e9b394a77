# Settings that every target of this project shares, and the two functions that make targets.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_AUTOUIC OFF)

# Everything that runs, and the libraries it loads, stand side by side.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN")

if(WIN32)
  set(FFC_PLATFORM_SUFFIX win32)
else()
  set(FFC_PLATFORM_SUFFIX posix)
endif()

add_library(ffc_options INTERFACE)
target_compile_definitions(ffc_options INTERFACE QT_DEPRECATED_WARNINGS QT_NO_CAST_TO_ASCII)
if(WIN32)
  target_compile_definitions(ffc_options INTERFACE NOMINMAX)
endif()
if(MSVC)
  # Warnings are no errors here: they differ from version to version, and a viewer decides which one is used.
  target_compile_options(ffc_options INTERFACE /W4 /utf-8 /permissive- /Zc:__cplusplus)
  target_compile_definitions(ffc_options INTERFACE _CRT_SECURE_NO_WARNINGS)
else()
  target_compile_options(ffc_options INTERFACE -Wall -Wextra -Wconversion -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # In a unity build also of two sources that are compiled together: a local name that another source has for the file.
    target_compile_options(ffc_options INTERFACE -Wshadow)
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # The toolkit's way to write a key with its modifier, and a frame with its shadow.
    target_compile_options(ffc_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-enum-enum-conversion>)
  endif()
endif()
if(FFC_SANITIZE)
  target_compile_options(ffc_options INTERFACE
    -fsanitize=${FFC_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(ffc_options INTERFACE -fsanitize=${FFC_SANITIZE})
endif()
if(FFC_COVERAGE)
  target_compile_options(ffc_options INTERFACE -fprofile-instr-generate -fcoverage-mapping -fcoverage-mcdc)
  target_link_options(ffc_options INTERFACE -fprofile-instr-generate)
endif()

# Sources are compiled several at a time, their headers once, which halves the time of a whole build. The presets debug and
# tsan compile each source by itself and show an include that one lacks.
if(FFC_UNITY_BUILD)
  set(CMAKE_UNITY_BUILD ON)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # A fixture may stand in an unnamed namespace of a source: which is an included file here.
    target_compile_options(ffc_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-subobject-linkage>)
  endif()
endif()

# ffc_compile_translators_alone(SOURCES ...): a source that translates in a context of its own has a function for it that is
# called alike everywhere.
function(ffc_compile_translators_alone)
  foreach(source ${ARGN})
    get_filename_component(path "${source}" ABSOLUTE)
    if(path MATCHES "\\.cpp$" AND EXISTS "${path}")
      file(STRINGS "${path}" found REGEX "^QString Translate\\(" LIMIT_COUNT 1)
      if(found)
        set_source_files_properties(${source} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
      endif()
    endif()
  endforeach()
endfunction()

# ffc_add_library(NAME [STATIC|SHARED|OBJECT|MODULE] SOURCES ... [LINK ...])
#
# A library with the project's warnings. Its folder's headers are reached from the
# project's root ("platform/event.h"), so an include line shows which room it enters.
function(ffc_add_library name kind)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
  ffc_compile_translators_alone(${ARG_SOURCES})
  add_library(${name} ${kind} ${ARG_SOURCES})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE ffc_options PUBLIC ${ARG_LINK})
  if(kind STREQUAL "STATIC")
    # For the test that looks for one class in two of them.
    set_property(GLOBAL APPEND PROPERTY FFC_STATIC_LIBRARIES ${name})
  endif()
endfunction()

# ffc_add_test(NAME SOURCES ... [LINK ...] [QT] [SYSTEM] [COST seconds] [ONE_THREAD] [FOCUS] [ENVIRONMENT VAR=VALUE ...]
#              [TIMEOUT seconds])
#
# A GoogleTest program; each of its tests is one ctest entry (with a sanitizer, counted coverage or an emulator, whose
# start-up is slow, the whole program is one). With QT it gets a QApplication (on the display there is, else off screen).
# SYSTEM: it runs whole programs, or the module with everything around it, and so after all tests that do not. Of those,
# the ones with the greatest COST start first, so that no long one is left over at the end.
# ONE_THREAD: the thread sanitizer has nothing to see in it that other programs do not show, so it is left out there.
# FOCUS: it looks at where the focus is, or shows windows all the time: under Wine, where all programs share one desktop,
# one of these runs at a time, and the first of them before all others, since the last would else run alone at the end.
function(ffc_add_test name)
  cmake_parse_arguments(ARG "QT;SYSTEM;ONE_THREAD;FOCUS" "COST;TIMEOUT" "SOURCES;LINK;ENVIRONMENT" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}")
  target_link_libraries(${name} PRIVATE ffc_options GTest::gtest GTest::gmock ${ARG_LINK})
  if(ARG_QT)
    target_link_libraries(${name} PRIVATE ffc_qttestmain Qt5::Widgets Qt5::Test)
    set_target_properties(${name} PROPERTIES AUTOMOC ON)
    ffc_use_precompiled_headers(${name} ffc_qttestheaders)
  else()
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
    ffc_use_precompiled_headers(${name} ffc_testheaders)
  endif()
  if(ARG_ONE_THREAD AND FFC_SANITIZE MATCHES "thread")
    set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON)
    return()
  endif()
  ffc_get_schedule(schedule "${ARG_SYSTEM}" "${ARG_COST}" "${ARG_FOCUS}")
  set(environment ${FFC_TEST_ENVIRONMENT} ${ARG_ENVIRONMENT})
  if(FFC_SANITIZE OR FFC_COVERAGE OR CMAKE_CROSSCOMPILING)
    math(EXPR timeout "${ARG_TIMEOUT} * 5")
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${timeout} ENVIRONMENT "${environment}" ${schedule})
  else()
    # Discovery would break the list of an ENVIRONMENT property apart, and needs the variables itself. CMake's own env
    # takes longer to start than many a test.
    if(UNIX)
      set(env /usr/bin/env)
    else()
      set(env "${CMAKE_COMMAND};-E;env")
    endif()
    set_target_properties(${name} PROPERTIES CROSSCOMPILING_EMULATOR "${env};${environment}")
    include(GoogleTest)
    gtest_discover_tests(${name}
      DISCOVERY_MODE PRE_TEST
      DISCOVERY_TIMEOUT 60
      NO_PRETTY_VALUES
      PROPERTIES TIMEOUT ${ARG_TIMEOUT} ${schedule})
  endif()
endfunction()

# ffc_get_schedule(OUT SYSTEM COST [FOCUS]): the properties that say when a test runs. ctest starts those of the greatest
# cost first; what no test takes is given to those that come before all system tests, and twice that to those that wait for
# each other.
function(ffc_get_schedule out system cost)
  if(NOT cost)
    set(cost 0)
  endif()
  set(focus "${ARGN}")
  set(lock)
  if(focus AND CMAKE_CROSSCOMPILING)
    math(EXPR cost "${cost} + 20000")
    set(lock RESOURCE_LOCK focus)
  elseif(NOT system)
    math(EXPR cost "${cost} + 10000")
  elseif(cost EQUAL 0)
    set(cost 1)
  endif()
  if(system)
    set(label system)
  else()
    set(label unit)
  endif()
  set(${out} LABELS ${label} COST ${cost} ${lock} PARENT_SCOPE)
endfunction()
