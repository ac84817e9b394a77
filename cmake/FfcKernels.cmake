# Sources that are compiled once per instruction level, from which a program chooses when it is loaded.

include(CheckCXXCompilerFlag)

set(FFC_OMITTED_LEVELS "" CACHE STRING "Levels above the baseline that the kernels are not compiled for, which is quicker")

# FFC_KERNEL_LEVELS: the levels that are built. FFC_KERNEL_OPTIONS_<level>: what the compiler is told.
set(FFC_KERNEL_LEVELS baseline)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64)$" AND CMAKE_SIZEOF_VOID_P EQUAL 8)
  if(MSVC)
    # Its code without /arch is the baseline; there is no level between that and AVX2.
    list(APPEND FFC_KERNEL_LEVELS v3 v4)
    set(FFC_KERNEL_OPTIONS_v3 /arch:AVX2)
    set(FFC_KERNEL_OPTIONS_v4 /arch:AVX512)
  else()
    list(APPEND FFC_KERNEL_LEVELS v2 v3 v4)
    foreach(level v2 v3 v4)
      set(FFC_KERNEL_OPTIONS_${level} -march=x86-64-${level})
    endforeach()
    # Prefetching to write is of no level, but every processor with AVX2 takes it.
    list(APPEND FFC_KERNEL_OPTIONS_v3 -mprfchw)
    list(APPEND FFC_KERNEL_OPTIONS_v4 -mprfchw)
    if(WIN32)
      # GCC keeps vectors of 32 and 64 bytes on a stack that 64-bit Windows aligns to 16, and stores them with
      # instructions that fault there (GCC bug 54412). The assembler can write the forgiving form of each, which is
      # as fast; one that cannot leaves these levels out.
      check_cxx_compiler_flag(-Wa,-muse-unaligned-vector-move FFC_HAS_UNALIGNED_VECTOR_MOVE)
      if(FFC_HAS_UNALIGNED_VECTOR_MOVE)
        list(APPEND FFC_KERNEL_OPTIONS_v3 -Wa,-muse-unaligned-vector-move)
        list(APPEND FFC_KERNEL_OPTIONS_v4 -Wa,-muse-unaligned-vector-move)
      else()
        list(REMOVE_ITEM FFC_KERNEL_LEVELS v3 v4)
      endif()
    endif()
  endif()
  if(FFC_OMITTED_LEVELS)
    list(REMOVE_ITEM FFC_KERNEL_LEVELS ${FFC_OMITTED_LEVELS})
  endif()
endif()

# ffc_add_kernels(TARGET TABLE SName HEADER header.h SOURCE source.cpp [NAMESPACE name])
#
# Compiles one source of plain loops for every level, fully optimised whatever the build type, into TARGET. The header
# declares the structure SName, a table of functions, and
#
#   const SName *FindSName(EInstructionLevel eLevel);
#
# which is made here, in that namespace, and answers null for a level that was not built. The source defines the table
# under the name FFC_KERNEL_TABLE. All else in it needs internal linkage, and it may use no function and no template of a
# header: the linker would keep one copy of all levels', and an older processor might get a newer one's.
function(ffc_add_kernels target)
  cmake_parse_arguments(ARG "" "TABLE;HEADER;SOURCE;NAMESPACE" "" ${ARGN})
  set(opening "")
  set(closing "")
  if(ARG_NAMESPACE)
    set(opening "namespace ${ARG_NAMESPACE} {\n")
    set(closing "\n} // namespace ${ARG_NAMESPACE}\n")
  endif()
  set(declarations "")
  set(cases "")
  foreach(level IN LISTS FFC_KERNEL_LEVELS)
    set(table g_st${ARG_TABLE}_${level})
    string(TOUPPER ${level} upper)
    string(APPEND declarations "extern const ${ARG_TABLE} ${table};\n")
    string(APPEND cases "  case ffc::platform::INSTRUCTION_LEVEL_${upper}: return &${table};\n")
    set(object ${target}_${level})
    ffc_add_library(${object} OBJECT SOURCES ${ARG_SOURCE})
    target_compile_definitions(${object} PRIVATE FFC_KERNEL_TABLE=${table})
    if(MSVC)
      target_compile_options(${object} PRIVATE $<$<NOT:$<CONFIG:Debug>>:/O2>)
    else()
      target_compile_options(${object} PRIVATE -O3)
    endif()
    target_compile_options(${object} PRIVATE ${FFC_KERNEL_OPTIONS_${level}})
    target_sources(${target} PRIVATE $<TARGET_OBJECTS:${object}>)
  endforeach()
  set(generated "${CMAKE_CURRENT_BINARY_DIR}/${target}_levels.cpp")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/kernellevels.cpp.in" "${generated}" @ONLY)
  target_sources(${target} PRIVATE "${generated}")
endfunction()

# ffc_add_kernel_tests(TARGET PROGRAM)
#
# Runs the whole of a test program with each level below the machine's own, and checks that the kernels of TARGET, a
# target of ffc_add_kernels, show the linker nothing that it could merge.
function(ffc_add_kernel_tests target program)
  if(FFC_SANITIZE MATCHES "thread")
    return()
  endif()
  set(levels ${FFC_KERNEL_LEVELS})
  list(REMOVE_ITEM levels v4)
  ffc_get_schedule(schedule "" 0)
  foreach(level IN LISTS levels)
    add_test(NAME ${program}_${level} COMMAND ${program})
    set_tests_properties(${program}_${level} PROPERTIES TIMEOUT 600 ${schedule}
      ENVIRONMENT "${FFC_TEST_ENVIRONMENT};FFC_INSTRUCTION_LEVEL=${level}")
  endforeach()
  ffc_add_kernel_symbols_test(${target})
endfunction()

# ffc_add_kernel_symbols_test(TARGET): the latter check alone, where one run of a program tries all levels.
function(ffc_add_kernel_symbols_test target)
  if(NOT MSVC AND NOT FFC_SANITIZE MATCHES "thread")
    ffc_get_schedule(schedule "" 0)
    set(objects "")
    foreach(level IN LISTS FFC_KERNEL_LEVELS)
      list(APPEND objects "$<TARGET_OBJECTS:${target}_${level}>")
    endforeach()
    list(JOIN objects "," objects)
    add_test(NAME ${target}_symbols_test COMMAND "${CMAKE_COMMAND}" "-DNM=${CMAKE_NM}" "-DFILES=${objects}"
      -P "${PROJECT_SOURCE_DIR}/tests/support/kernelsymbols.cmake")
    set_tests_properties(${target}_symbols_test PROPERTIES ${schedule})
  endif()
endfunction()
